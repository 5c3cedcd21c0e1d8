// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// How much of a film has been watched, along the lower edge of its poster.
Item {
    id: bar

    property real progress: -1
    property int radius: Theme.radius

    clip: true
    height: 3
    visible: progress >= 0

    // The whole poster's shape, so that the bar follows its corners.
    Item {
        clip: true
        height: bar.height
        width: bar.width * Math.max(0, Math.min(1, bar.progress))

        Rectangle {
            anchors.bottom: parent.bottom
            color: Theme.accent
            height: 4 * bar.radius
            radius: bar.radius
            width: bar.width
        }
    }
}
