// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Item {
    id: row

    required property ResultColumns columns
    required property bool current
    required property bool ringed
    required property string title
    required property string licence
    required property string size
    required property string seeds
    required property bool seeded
    required property string peers
    required property string quality
    required property string format
    required property string source
    required property string spoken

    signal cutTitleHovered(bool hovered)
    signal pressed()
    signal menuWanted(real x, real y)

    Accessible.description: spoken
    Accessible.focusable: true
    Accessible.focused: ringed
    Accessible.name: title
    Accessible.role: Accessible.ListItem
    Accessible.selected: current
    Accessible.onPressAction: row.menuWanted(dots.x, height)

    Rectangle {
        anchors.fill: parent
        color: row.current ? Theme.fillHovered : hover.hovered ? Theme.fill : "transparent"
        radius: 6

        FocusRing {
            around: -1
            radius: 5
            shown: row.ringed
        }
    }
    HoverHandler {
        id: hover
    }
    TapHandler {
        acceptedButtons: Qt.LeftButton
        gesturePolicy: TapHandler.DragThreshold

        onTapped: row.pressed()
    }
    TapHandler {
        acceptedButtons: Qt.RightButton

        onTapped: point => row.menuWanted(point.position.x, point.position.y)
    }
    Row {
        height: parent.height
        spacing: row.columns.gap
        x: row.columns.padding

        Column {
            anchors.verticalCenter: parent.verticalCenter
            width: row.columns.title

            Label {
                Accessible.ignored: true
                font.pixelSize: Theme.callout
                text: row.title
                width: parent.width

                HoverHandler {
                    enabled: (parent as Label).truncated

                    onHoveredChanged: row.cutTitleHovered(hovered)
                }
            }
            Label {
                Accessible.ignored: true
                color: Theme.secondary
                font.pixelSize: Theme.caption2
                text: row.licence
                visible: text !== ""
                width: parent.width
            }
        }
        NumberCell {
            text: row.size
            width: row.columns.widths[0]
        }
        NumberCell {
            color: row.seeded ? Theme.good : Theme.secondary
            text: row.seeds
            width: row.columns.widths[1]
        }
        NumberCell {
            text: row.peers
            width: row.columns.widths[2]
        }
        TextCell {
            leftPadding: 8 // from the numbers before it
            text: row.quality
            width: row.columns.widths[3]
        }
        TextCell {
            text: row.format
            width: row.columns.widths[4]
        }
        TextCell {
            font.pixelSize: Theme.caption
            text: row.source
            width: row.columns.widths[5]
        }
        IconButton {
            id: dots

            activeFocusOnTab: false
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.secondary
            focusPolicy: Qt.NoFocus
            iconSize: 18
            symbol: "ellipsis.circle"
            text: qsTr("Actions")
            width: row.columns.menu

            onClicked: row.menuWanted(x, row.height - 2)
        }
    }
}
