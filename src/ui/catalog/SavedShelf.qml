// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

// Video files of the downloads folder: a card plays one.
Shelf {
    id: saved

    required property var app // an AppState

    key: "url"
    visible: records.length > 0

    delegate: ShelfCard {
        shelf: saved
        subtitle: Format.byteCount(record.size)
    }

    onActivated: file => app.playLocal(file)
}
