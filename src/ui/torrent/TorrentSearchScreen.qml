// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

FocusScope {
    id: screen

    required property var app // an AppState

    readonly property bool uncovered: !app.inspector && !app.selectedItem && app.notice === ""

    TorrentSearch {
        id: search

        app: screen.app
    }
    TorrentResultModel {
        id: results

        aggregator: screen.app.aggregator
    }
    Shortcut {
        enabled: screen.visible && screen.uncovered
        sequences: ["Ctrl+Return", "Ctrl+Enter"]

        onActivated: search.search(inputs.query)
    }
    Column {
        id: above

        spacing: 10
        width: parent.width - 2 * Theme.inset
        x: Theme.inset
        y: Theme.inset

        PageHeader {
            title: qsTr("Torrent Search")
            width: parent.width
        }
        SearchInputs {
            id: inputs

            app: screen.app
            focus: true
            width: parent.width

            onSearched: search.search(query)
        }
        IconLabel {
            pixelSize: Theme.caption
            symbol: "info.circle"
            text: qsTr("Searches metadata only — nothing is downloaded or played automatically. Results come from third-party indexes; their legality isn't verified. Only use content you have the right to access.")
            width: parent.width
        }
        ProviderStrip {
            chips: search.chips
            unprovided: search.unprovided
            width: parent.width
        }
        ResultFilters {
            results: results
            visible: table.visible
            width: parent.width
        }
    }
    Label {
        anchors.fill: table
        color: Theme.secondary
        horizontalAlignment: Text.AlignHCenter
        text: search.message
        verticalAlignment: Text.AlignVCenter
        visible: !search.hasResults
        wrapMode: Text.Wrap
    }
    ResultTable {
        id: table

        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.grid
        anchors.left: above.left
        anchors.right: above.right
        anchors.top: above.bottom
        anchors.topMargin: above.spacing
        app: screen.app
        results: results
        visible: search.hasResults && !results.isEmpty // rows come a moment after the answer
    }
}
