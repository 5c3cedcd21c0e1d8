// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

MenuPanel {
    id: menu

    required property Commands commands

    title: qsTr("Menu")
    x: 0

    MenuNote {
        text: qsTr("Playback")
    }
    CommandRow {
        command: menu.commands.playPause
    }
    CommandRow {
        command: menu.commands.skipBack
    }
    CommandRow {
        command: menu.commands.skipForward
    }
    CommandRow {
        command: menu.commands.volumeUp
    }
    CommandRow {
        command: menu.commands.volumeDown
    }
    CommandRow {
        command: menu.commands.mute
    }
    CommandRow {
        command: menu.commands.fullScreen
    }
    MenuDivider {
    }
    CommandRow {
        command: menu.commands.stop
    }
    MenuDivider {
    }
    CommandRow {
        command: menu.commands.quit
    }
}
