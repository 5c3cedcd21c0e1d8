// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// By which a row of a list is dragged to another place. The row follows the pointer and a line
// shows where it would go; near the list's ends the list scrolls.
MouseArea {
    id: grip

    required property ListRow row
    required property int place // of the row, in its list

    readonly property ListView view: row.ListView.view as ListView
    readonly property string hint: qsTr("Drag to change its place, or press Alt+Up or Alt+Down")
    property bool dragging: false
    property int target: -1
    property real pointer: 0 // in the view
    property real pressedAt: 0 // in the view's content
    readonly property real shift: dragging ? pointer + view.contentY - pressedAt : 0

    signal dropped(int place)

    function follow(mouse: MouseEvent) {
        pointer = mapToItem(view, mouse.x, mouse.y).y;
        if (!dragging && Math.abs(pointer + view.contentY - pressedAt)
            < Application.styleHints.startDragDistance)
            return;
        dragging = true;
        aim();
    }
    // Between two rows it stays with the one before.
    function aim() {
        const over = view.indexAt(view.width / 2, row.y + shift + row.height / 2);
        if (over >= 0)
            target = over;
        else if (row.y + shift < view.originY)
            target = 0;
        else if (row.y + shift + row.height > view.originY + view.contentHeight)
            target = view.count - 1;
    }
    function scroll(by: real) {
        const lowest = view.originY - view.topMargin;
        const highest = view.originY + view.contentHeight + view.bottomMargin - view.height;
        view.contentY = Math.max(lowest, Math.min(Math.max(lowest, highest), view.contentY + by));
        aim();
    }

    cursorShape: dragging ? Qt.ClosedHandCursor : Qt.OpenHandCursor
    hoverEnabled: true
    implicitHeight: 32
    implicitWidth: 28
    preventStealing: true

    Accessible.ignored: true // the keys do the same

    onCanceled: dragging = false
    onPositionChanged: mouse => {
        if (pressed)
            follow(mouse);
    }
    onPressed: mouse => {
        pointer = mapToItem(view, mouse.x, mouse.y).y;
        pressedAt = pointer + view.contentY;
        target = place;
        view.currentIndex = place; // or it would go once it is scrolled out of sight
    }
    onReleased: {
        const moves = dragging && target !== place;
        dragging = false;
        if (moves)
            dropped(target);
    }

    Timer {
        readonly property int edge: 40
        readonly property int step: 8
        readonly property int direction: grip.pointer < edge ? -1
                                         : grip.pointer > grip.view?.height - edge ? 1 : 0

        interval: 16
        repeat: true
        running: grip.dragging && direction !== 0

        onTriggered: grip.scroll(direction * step)
    }
    Rectangle {
        readonly property Item neighbour: grip.dragging && grip.target !== grip.place
                                          ? grip.view.itemAtIndex(grip.target) : null

        color: Theme.accent
        height: 2
        parent: grip.view?.contentItem ?? null
        radius: 1
        visible: neighbour !== null
        width: (grip.view?.width ?? 0) - 2 * Theme.inset
        x: Theme.inset
        y: !neighbour ? 0
           : neighbour.y + (grip.target < grip.place ? -4 : neighbour.height + 2)
        z: 3
    }
    Icon {
        anchors.centerIn: parent
        color: grip.containsMouse || grip.dragging ? Theme.secondary : Theme.tertiary
        name: "line.3.horizontal"
        size: 16
    }
    HoverTip {
        text: grip.hint
        wanted: grip.containsMouse && !grip.pressed
    }
}
