// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick

// The keys that scroll a view; it forwards its keys here.
Item {
    id: keys

    required property Flickable view
    property real line: 60 // pixels

    function scroll(by: real) {
        const top = view.originY;
        const lowest = top + Math.max(0, view.contentHeight - view.height);
        view.contentY = Math.max(top, Math.min(lowest, view.contentY + by));
    }

    Keys.onPressed: event => {
        const page = Math.max(line, view.height - line);
        const steps = new Map([[Qt.Key_Up, -line], [Qt.Key_Down, line],
                               [Qt.Key_PageUp, -page], [Qt.Key_PageDown, page],
                               [Qt.Key_Home, -view.contentHeight], [Qt.Key_End, view.contentHeight]]);
        event.accepted = steps.has(event.key);
        if (event.accepted)
            scroll(steps.get(event.key));
    }
}
