// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tavelo

// As many columns of 150 to 170 pixels as there is room for.
GridView {
    id: cards

    required property MediaGrid grid

    readonly property int gap: 18
    readonly property int room: width - 2 * Theme.inset + gap
    readonly property int columns: Math.max(1, Math.floor(room / (150 + gap)))
    readonly property int rowHeight: 274 + 22
    readonly property bool driven: moving || thumb.pressed

    boundsBehavior: Flickable.StopAtBounds
    cacheBuffer: 2 * rowHeight
    cellHeight: rowHeight
    cellWidth: Math.min(170 + gap, Math.floor(room / columns))
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

    delegate: Item {
        id: cell

        required property int index
        required property var record
        property bool pooled: false // waits for another record; must not hold on to its poster

        height: cards.cellHeight
        width: cards.cellWidth

        GridView.onPooled: pooled = true
        GridView.onReused: pooled = false

        PosterCard {
            ringed: cards.grid.keyed && cell.GridView.isCurrentItem
            subtitle: cell.record.year
            title: cell.record.title
            url: cell.pooled ? "" : cell.record.thumbnailURL
            width: 150
            x: Theme.inset

            onClicked: cards.grid.open(cell.index)
        }
    }
}
