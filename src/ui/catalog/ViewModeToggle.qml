// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// Grid or list: one setting for every screen that shows films in either form.
Rectangle {
    id: toggle

    required property var app // an AppState

    readonly property var settings: app.settings

    border.color: Theme.hairline
    color: Theme.fillPressed
    implicitHeight: 32
    implicitWidth: 80
    radius: 7

    Row {
        anchors.fill: parent
        anchors.margins: 2

        ViewModeSegment {
            id: grid

            KeyNavigation.right: list
            chosen: toggle.settings.gridView
            height: parent.height
            symbol: "square.grid.2x2"
            text: qsTr("Grid")
            width: parent.width / 2

            onClicked: toggle.settings.gridView = true
        }
        ViewModeSegment {
            id: list

            KeyNavigation.left: grid
            chosen: !toggle.settings.gridView
            height: parent.height
            symbol: "list.bullet"
            text: qsTr("List")
            width: parent.width / 2

            onClicked: toggle.settings.gridView = false
        }
    }
}
