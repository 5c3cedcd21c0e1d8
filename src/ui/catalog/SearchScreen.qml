// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tavelo

// The catalogue by words.
MediaPage {
    id: search

    busy: app.searching
    failed: app.searchError !== ""
    items: app.searchResults
    message: failed ? qsTr("Search failed: ") + app.searchError
                    : qsTr("Search the Internet Archive's public video catalog. For torrent sources, use Torrent Search.")
    title: qsTr("Search")

    Shortcut {
        enabled: search.visible
        sequences: ["Ctrl+Return", "Ctrl+Enter"]

        onActivated: button.clicked()
    }
    RowLayout {
        spacing: Theme.grid
        width: parent.width - 2 * Theme.inset
        x: Theme.inset

        TextEntry {
            Layout.fillWidth: true
            focus: true
            placeholderText: qsTr("Search Orvella films, documentaries, shorts…")
            symbol: "magnifyingglass"
            text: search.app.searchQuery

            onAccepted: search.app.runSearch()
            onTextEdited: search.app.searchQuery = text
        }
        PushButton {
            id: button

            prominent: true
            text: qsTr("Search")

            onClicked: search.app.runSearch()
        }
    }
}
