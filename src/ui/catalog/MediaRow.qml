// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// One film of a list, with a line below it.
T.AbstractButton {
    id: row

    required property var record // a MediaItem
    property bool pooled: false // waits for another record; must not hold on to its poster
    property bool ringed: false

    focusPolicy: Qt.NoFocus
    padding: 8
    text: record.title

    Accessible.description: record.credits
    Accessible.name: text
    Accessible.role: Accessible.ListItem

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }

    Item {
        anchors.fill: parent
        anchors.margins: row.padding

        Poster {
            id: poster

            anchors.verticalCenter: parent.verticalCenter
            height: 64
            radius: 4
            symbols: false
            url: row.pooled ? "" : row.record.thumbnailURL
            width: 48
        }
        Column {
            anchors.left: poster.right
            anchors.leftMargin: 12
            anchors.right: badge.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2

            Label {
                Accessible.ignored: true
                font.weight: Font.Medium
                maximumLineCount: 1
                text: row.text
                width: parent.width
            }
            Label {
                Accessible.ignored: true
                color: Theme.secondary
                font.pixelSize: Theme.caption
                maximumLineCount: 1
                text: row.record.credits
                width: parent.width
            }
            Label {
                Accessible.ignored: true
                color: Theme.tertiary
                font.pixelSize: Theme.caption
                maximumLineCount: 2
                text: row.record.extract
                visible: text !== ""
                width: parent.width
                wrapMode: Text.Wrap
            }
        }
        Badge {
            id: badge

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Orvella")
        }
    }

    background: Item {
        Rectangle {
            anchors.bottomMargin: 1
            anchors.fill: parent
            color: row.down ? Theme.fillPressed : row.hovered ? Theme.fill : "transparent"
            radius: Theme.radius

            FocusRing {
                around: 0
                radius: parent.radius
                shown: row.ringed
            }
        }
        Rectangle {
            color: Theme.hairline
            height: 1
            width: parent.width - 2 * x
            x: row.padding
            y: parent.height - 1
        }
    }
}
