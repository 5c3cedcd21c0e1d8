// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// The line at the left of a column, wide enough to be dragged. Shift with an arrow key moves it too;
// the column's name forwards its keys here.
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

    Keys.onPressed: event => {
        const step = event.key === Qt.Key_Left ? 8 : event.key === Qt.Key_Right ? -8 : 0;
        event.accepted = step !== 0 && column >= 0 && event.modifiers === Qt.ShiftModifier;
        if (event.accepted)
            columns.resize(column, columns.widths[column] + step);
    }
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
