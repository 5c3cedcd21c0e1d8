// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tavelo

ListView {
    id: rows

    required property MediaGrid grid

    readonly property int columns: 1
    readonly property int rowHeight: 89
    readonly property bool driven: moving || thumb.pressed

    bottomMargin: Theme.inset
    boundsBehavior: Flickable.StopAtBounds
    cacheBuffer: 4 * rowHeight
    focus: true
    highlightMoveDuration: 150
    keyNavigationEnabled: false
    reuseItems: true
    topMargin: grid.headHeight

    Accessible.name: grid.title
    Accessible.role: Accessible.List
    T.ScrollBar.vertical: ScrollThumb {
        id: thumb
    }
    activeFocusOnTab: true

    delegate: MediaRow {
        id: row

        required property int index

        height: rows.rowHeight
        ringed: rows.grid.keyed && ListView.isCurrentItem
        width: rows.width - 2 * x
        x: Theme.inset - 8

        ListView.onPooled: pooled = true
        ListView.onReused: pooled = false
        onClicked: rows.grid.open(row.index)
    }
}
