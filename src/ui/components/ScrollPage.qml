// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// A screen that scrolls: its blocks below one another, and whatever has the focus in view.
Flickable {
    id: page

    property alias spacing: column.spacing
    default property alias blocks: column.data

    function reveal(item: Item) {
        const top = item.mapToItem(column, 0, 0).y;
        if (top < contentY)
            contentY = Math.max(0, top - Theme.inset);
        else if (top + item.height > contentY + height)
            contentY = Math.max(0, Math.min(contentHeight, top + item.height + Theme.inset)
                                   - height);
    }

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    contentHeight: column.height
    flickableDirection: Flickable.VerticalFlick

    T.ScrollBar.vertical: ScrollThumb {
    }

    Keys.onTabPressed: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)

    Column {
        id: column

        bottomPadding: Theme.inset
        spacing: Theme.inset
        topPadding: Theme.inset
        width: page.width
    }
    Connections {
        function onActiveFocusItemChanged() {
            const item = page.Window.activeFocusItem;
            for (let above = item; above; above = above.parent) {
                if (above === column)
                    return page.reveal(item);
            }
        }

        target: page.Window.window
    }
}
