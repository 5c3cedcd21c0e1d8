// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tavelo

ColumnLayout {
    id: body

    required property string title
    required property string message

    signal dismissed()

    function takeFocus() {
        ok.forceActiveFocus(Qt.PopupFocusReason);
    }

    spacing: Theme.grid

    Label {
        Layout.fillWidth: true
        font.bold: true
        font.pixelSize: Theme.title3
        heading: true
        horizontalAlignment: Text.AlignHCenter
        text: body.title
    }
    Label {
        Layout.fillWidth: true
        color: Theme.secondary
        font.pixelSize: Theme.callout
        horizontalAlignment: Text.AlignHCenter
        text: body.message
        wrapMode: Text.Wrap
    }
    PushButton {
        id: ok

        Layout.fillWidth: true
        Layout.topMargin: Theme.grid
        focus: true
        prominent: true
        text: qsTr("OK")

        onClicked: body.dismissed()
    }
}
