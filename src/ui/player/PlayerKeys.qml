// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// The player's keys, without modifiers. A text field that has the focus keeps them to itself.
Item {
    id: keys

    required property var player // a VideoPlayerManager

    signal fullScreenToggled()
    signal leave()

    Shortcut {
        autoRepeat: false
        enabled: keys.enabled
        sequence: "Space"

        onActivated: keys.player.toggle()
    }
    Shortcut {
        enabled: keys.enabled
        sequence: "Left"

        onActivated: keys.player.seekBy(-10)
    }
    Shortcut {
        enabled: keys.enabled
        sequence: "Right"

        onActivated: keys.player.seekBy(10)
    }
    Shortcut {
        enabled: keys.enabled
        sequence: "Up"

        onActivated: keys.player.adjustVolume(0.1)
    }
    Shortcut {
        enabled: keys.enabled
        sequence: "Down"

        onActivated: keys.player.adjustVolume(-0.1)
    }
    Shortcut {
        autoRepeat: false
        enabled: keys.enabled
        sequence: "M"

        onActivated: keys.player.isMuted = !keys.player.isMuted
    }
    Shortcut {
        autoRepeat: false
        enabled: keys.enabled
        sequence: "F"

        onActivated: keys.fullScreenToggled()
    }
    Shortcut {
        autoRepeat: false
        enabled: keys.enabled
        sequence: "Escape"

        onActivated: keys.leave()
    }
}
