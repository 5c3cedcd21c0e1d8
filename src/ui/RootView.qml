// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// The sidebar, the screen of the chosen section or the player, and the panels over both.
FocusScope {
    id: root

    required property var app // an AppState
    property bool fullScreen: false

    readonly property bool watching: app.showPlayer && !!app.playback.nowPlaying

    signal fullScreenToggled()
    signal quitAsked()

    Commands {
        id: commands

        app: root.app

        onFullScreenToggled: root.fullScreenToggled()
        onMenuAsked: sidebar.toggleMenu()
        onQuitAsked: root.quitAsked()
    }
    Sidebar {
        id: sidebar

        app: root.app
        commands: commands
        height: parent.height
        visible: !(root.fullScreen && root.watching)
        width: visible ? divider.sidebarWidth : 0
    }
    DetailArea {
        app: root.app
        focus: true
        height: parent.height
        watching: root.watching
        width: parent.width - x
        x: sidebar.width

        onFullScreenToggled: root.fullScreenToggled()
    }
    SidebarDivider {
        id: divider

        height: parent.height
        visible: sidebar.visible
        x: sidebar.width - width / 2
    }
    Overlays {
        app: root.app
    }
}
