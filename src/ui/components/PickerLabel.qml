// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Item {
    id: label

    required property string text
    required property string value

    implicitHeight: what.implicitHeight
    implicitWidth: Math.ceil(what.implicitWidth + 6 + chosen.implicitWidth + 2 + arrow.width)

    Label {
        id: what

        Accessible.ignored: true
        anchors.verticalCenter: parent.verticalCenter
        color: label.value === "" ? Theme.primary : Theme.secondary
        font.pixelSize: Theme.caption
        text: label.text
        width: Math.min(implicitWidth, arrow.x)
    }
    Label {
        id: chosen

        Accessible.ignored: true
        anchors.left: what.right
        anchors.leftMargin: 6
        anchors.right: arrow.left
        anchors.rightMargin: 2
        anchors.verticalCenter: parent.verticalCenter
        font.pixelSize: Theme.caption
        font.weight: Font.Medium
        text: label.value
    }
    Icon {
        id: arrow

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondary
        name: "chevron.down"
        size: 12
    }
}
