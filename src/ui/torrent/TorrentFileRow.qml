// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Item {
    id: row

    required property string path
    required property string symbol
    required property string size

    height: 28

    Accessible.description: size
    Accessible.name: path
    Accessible.role: Accessible.ListItem

    Icon {
        id: icon

        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondary
        name: row.symbol
        size: 16
        x: 8
    }
    HoverHandler {
        id: hover
    }
    HoverTip {
        text: row.path
        wanted: hover.hovered && shown.truncated
    }
    Label {
        id: shown

        Accessible.ignored: true
        anchors.left: icon.right
        anchors.leftMargin: 8
        anchors.right: bytes.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideMiddle
        font.pixelSize: Theme.callout
        text: row.path
    }
    Label {
        id: bytes

        Accessible.ignored: true
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondary
        font.family: Fonts.digits
        font.pixelSize: Theme.caption
        text: row.size
    }
}
