// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A spinner and, below it, what is waited for. The spinner stays where it is when that changes.
Rectangle {
    id: panel

    required property string reason // empty: not worth telling
    property real maximumWidth: 420

    readonly property int restHeight: 96 // without a reason

    color: Theme.material
    height: restHeight + (words.visible ? words.height : 0)
    radius: 14
    width: words.visible ? words.width + 2 * Theme.inset : restHeight

    Spinner {
        anchors.horizontalCenter: parent.horizontalCenter
        size: 48
        y: (panel.restHeight - height) / 2
    }
    Label {
        id: words

        // The next second's text, wider or not, mostly has the same width.
        readonly property int step: 32

        Accessible.role: Accessible.AlertMessage
        anchors.horizontalCenter: parent.horizontalCenter
        bottomPadding: 20
        font.pixelSize: Theme.callout
        horizontalAlignment: Text.AlignHCenter
        text: panel.reason
        visible: panel.reason !== ""
        width: Math.min(Math.ceil(implicitWidth / step) * step,
                        panel.maximumWidth - 2 * Theme.inset)
        wrapMode: Text.Wrap
        y: panel.restHeight - 4
    }
}
