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
    FocusReveal {
        blocks: [column]
        view: page
    }
}
