// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// The line between two columns, wide enough to be dragged.
MouseArea {
    id: edge

    property real pressedAt: 0 // in the window

    signal grabbed()
    signal moved(real by) // since it was grabbed

    cursorShape: Qt.SplitHCursor
    height: parent.height
    hoverEnabled: true
    preventStealing: true
    width: 9
    x: -8

    onPositionChanged: event => {
        if (pressed)
            moved(mapToItem(null, event.x, 0).x - pressedAt);
    }
    onPressed: event => {
        pressedAt = mapToItem(null, event.x, 0).x;
        grabbed();
    }

    Rectangle {
        anchors.centerIn: parent
        color: edge.containsMouse || edge.pressed ? Qt.rgba(1, 1, 1, 0.3) : Theme.hairline
        height: 16
        width: 1
    }
}
