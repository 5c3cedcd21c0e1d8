// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

// Eight fading spokes that turn in steps: ten pictures a second, not sixty.
Item {
    id: spinner

    property color color: Theme.primary
    property int size: 20

    implicitHeight: size
    implicitWidth: size

    Accessible.name: qsTr("Loading")
    Accessible.role: Accessible.ProgressBar

    Item {
        id: spokes

        anchors.fill: parent

        Repeater {
            model: 8

            Rectangle {
                id: spoke

                required property int index

                antialiasing: true
                color: spinner.color
                height: spinner.size * 0.28
                opacity: 0.15 + 0.1 * index
                radius: width / 2
                width: Math.max(2, spinner.size * 0.1)
                x: (spinner.size - width) / 2

                transform: Rotation {
                    angle: spoke.index * 45
                    origin.x: spoke.width / 2
                    origin.y: spinner.size / 2
                }
            }
        }
    }
    Timer {
        interval: 100
        repeat: true
        running: spinner.visible

        onTriggered: spokes.rotation = (spokes.rotation + 45) % 360
    }
}
