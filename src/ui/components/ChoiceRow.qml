// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

T.MenuItem {
    id: row

    required property string label
    property bool chosen: false

    implicitHeight: 28
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    leftPadding: 8
    rightPadding: 16
    text: (chosen ? "✓ " : "") + label
    width: ListView.view ? ListView.view.width : implicitWidth

    Accessible.name: text

    background: Rectangle {
        color: row.highlighted || row.hovered ? Theme.accent : "transparent"
        radius: 5
    }
    contentItem: Row {
        spacing: 4

        Label {
            Accessible.ignored: true
            anchors.verticalCenter: parent.verticalCenter
            font.pixelSize: Theme.callout
            text: row.chosen ? "✓" : ""
            width: 16
        }
        Label {
            Accessible.ignored: true
            anchors.verticalCenter: parent.verticalCenter
            font.pixelSize: Theme.callout
            text: row.label
        }
    }
}
