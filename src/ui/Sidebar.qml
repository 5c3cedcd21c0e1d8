// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

Rectangle {
    id: sidebar

    required property var app // an AppState
    required property Commands commands

    readonly property var symbols: ({
            "Home": "house",
            "Discover": "sparkles.tv",
            "Search": "magnifyingglass",
            "Torrent Search": "network",
            "Library": "books.vertical",
            "Downloads": "arrow.down.circle",
            "Settings": "gearshape"
        })

    function toggleMenu() {
        menuButton.clicked();
    }
    function choose(section: string) {
        app.section = section;
        app.showPlayer = false;
    }

    color: Theme.sidebar

    ListView {
        id: list

        Accessible.name: qsTr("Sections")
        Accessible.role: Accessible.List
        activeFocusOnTab: true
        anchors.bottom: menuButton.top
        anchors.left: parent.left
        anchors.margins: 10
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.topMargin: 20
        boundsBehavior: Flickable.StopAtBounds
        currentIndex: sidebar.app.sections.indexOf(sidebar.app.section)
        interactive: contentHeight > height
        keyNavigationEnabled: false
        model: sidebar.app.sections
        spacing: 2

        Keys.onDownPressed: if (currentIndex < count - 1)
            sidebar.choose(model[currentIndex + 1])
        Keys.onEnterPressed: sidebar.choose(sidebar.app.section)
        Keys.onReturnPressed: sidebar.choose(sidebar.app.section)
        // The player's volume is not meant by whoever is among the sections.
        Keys.onShortcutOverride: event =>
            event.accepted = event.key === Qt.Key_Down || event.key === Qt.Key_Up
        Keys.onUpPressed: if (currentIndex > 0)
            sidebar.choose(model[currentIndex - 1])

        delegate: SidebarRow {
            id: row

            required property string modelData

            ringed: row.current && list.activeFocus
            symbol: sidebar.symbols[row.modelData] ?? ""
            text: row.modelData
            current: row.modelData === sidebar.app.section
            width: list.width

            onClicked: sidebar.choose(row.modelData)
        }
    }
    PopupButton {
        id: menuButton

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.margins: 10
        symbol: "line.3.horizontal"
        text: sidebar.commands.menu.text

        menu: MainMenu {
            commands: sidebar.commands
        }
    }
}
