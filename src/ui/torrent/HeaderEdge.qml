// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// The line at the left of a column, wide enough to be dragged.
MouseArea {
    id: edge

    required property ResultColumns columns
    required property int column // negative: none that could be resized

    property real pressedAt: 0 // in the window
    property real widthBefore: 0

    function across(x: real): real {
        return mapToItem(null, x, 0).x;
    }

    cursorShape: Qt.SplitHCursor
    height: parent.height
    hoverEnabled: true
    preventStealing: true
    visible: column >= 0
    width: 9
    x: -8

    onPositionChanged: event => {
        if (pressed)
            columns.resize(column, widthBefore - (across(event.x) - pressedAt));
    }
    onPressed: event => {
        pressedAt = across(event.x);
        widthBefore = columns.widths[column];
    }

    Rectangle {
        anchors.centerIn: parent
        color: edge.containsMouse || edge.pressed ? Qt.rgba(1, 1, 1, 0.3) : Theme.hairline
        height: 16
        width: 1
    }
}
