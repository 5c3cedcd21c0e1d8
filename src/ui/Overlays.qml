// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// The panels that any part of the program can raise.
Item {
    id: overlays

    required property var app // an AppState

    Lazy {
        app: overlays.app
        file: "catalog/ItemSheet.qml"
        wanted: !!overlays.app.selectedItem
    }
    Lazy {
        app: overlays.app
        file: "torrent/TorrentInspectorSheet.qml"
        wanted: !!overlays.app.inspector
    }
    Lazy {
        app: overlays.app
        file: "components/NoticeAlert.qml"
        wanted: overlays.app.notice !== ""
    }
}
