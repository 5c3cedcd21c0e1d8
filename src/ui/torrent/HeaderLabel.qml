// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A column's name, and an arrow where the table is sorted by it.
Item {
    id: label

    required property string text
    required property bool leading
    required property bool descending
    required property bool trailing
    required property bool lit
    property int indent: 0

    Row {
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2
        x: label.trailing ? label.width - width : label.indent

        Label {
            Accessible.ignored: true
            anchors.verticalCenter: parent.verticalCenter
            color: label.lit ? Theme.primary : Theme.secondary
            font.pixelSize: Theme.caption
            font.weight: Font.DemiBold
            text: label.text
            width: Math.min(implicitWidth, label.width - label.indent - (label.leading ? 14 : 0))
        }
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.accent
            name: label.descending ? "chevron.down" : "chevron.up"
            size: 12
            visible: label.leading
        }
    }
}
