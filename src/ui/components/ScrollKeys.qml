// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick

// The keys that scroll a view; it forwards its keys here.
Item {
    id: keys

    required property Flickable view
    property real line: 60 // pixels

    function scroll(by: real) {
        const top = view.originY - view.topMargin;
        const lowest = view.originY + view.contentHeight + view.bottomMargin - view.height;
        view.contentY = Math.max(top, Math.min(lowest, view.contentY + by));
    }
    function press(event: KeyEvent) {
        const page = Math.max(line, view.height - line);
        const steps = new Map([[Qt.Key_Up, -line], [Qt.Key_Down, line],
                               [Qt.Key_PageUp, -page], [Qt.Key_PageDown, page],
                               [Qt.Key_Home, -Infinity], [Qt.Key_End, Infinity]]);
        event.accepted = steps.has(event.key);
        if (event.accepted)
            scroll(steps.get(event.key));
    }

    Keys.onPressed: event => keys.press(event)
}
