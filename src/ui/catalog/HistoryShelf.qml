// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

// What was watched: a card goes on with it.
Shelf {
    id: history

    required property var app // an AppState
    property bool telling: false // how far each was watched

    key: "key"
    visible: records.length > 0

    delegate: ShelfCard {
        readonly property bool reached: history.telling && (hovered || ringed)

        progress: history.telling ? record.progress : -1
        shelf: history
        subtitle: history.telling ? Format.watched(record.position) : ""
        url: record.thumbnailURL

        onReachedChanged: {
            if (reached)
                history.app.reachCard(record);
            else
                history.app.leaveCard(record);
        }
    }

    onActivated: entry => app.resume(entry)
}
