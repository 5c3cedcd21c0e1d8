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

    Row {
        anchors.right: label.trailing ? parent.right : undefined
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Label {
            Accessible.ignored: true
            anchors.verticalCenter: parent.verticalCenter
            color: label.lit ? Theme.primary : Theme.secondary
            font.pixelSize: Theme.caption
            font.weight: Font.DemiBold
            text: label.text
            width: Math.min(implicitWidth, label.width - (label.leading ? 14 : 0))
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
