// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Window
import Tavelo

// Brings whatever gets the focus among a view's blocks into sight.
Connections {
    id: watcher

    required property Flickable view
    required property var blocks // Items that move with the view's content

    function reveal(item: Item) {
        const top = item.mapToItem(view.contentItem, 0, 0).y;
        const bottom = top + item.height;
        const highest = view.originY - view.topMargin;
        const lowest = view.originY + view.contentHeight + view.bottomMargin - view.height;
        if (top < view.contentY)
            view.contentY = Math.max(highest, top - Theme.inset);
        else if (bottom > view.contentY + view.height)
            view.contentY = Math.max(highest, Math.min(lowest, bottom + Theme.inset - view.height));
    }
    function onActiveFocusItemChanged() {
        const item = view.Window.activeFocusItem;
        for (let above = item; above; above = above.parent) {
            if (blocks.includes(above))
                return reveal(item);
        }
    }

    target: view.Window.window
}
