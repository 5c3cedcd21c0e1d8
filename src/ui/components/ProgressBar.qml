// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// From 0 to 1.
T.ProgressBar {
    id: bar

    implicitHeight: 4
    implicitWidth: 200

    Accessible.role: Accessible.ProgressBar

    background: Rectangle {
        color: Theme.fillHovered
        radius: height / 2
    }
    contentItem: Item {
        Rectangle {
            color: Theme.accent
            height: parent.height
            radius: height / 2
            width: Math.round(parent.width * bar.visualPosition)
        }
    }
}
