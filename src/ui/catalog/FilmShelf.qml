// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

Shelf {
    id: films

    required property var app // an AppState

    visible: records.length > 0

    delegate: ShelfCard {
        shelf: films
        subtitle: record.year
        url: record.thumbnailURL
    }

    onActivated: item => app.selectItem(item)
}
