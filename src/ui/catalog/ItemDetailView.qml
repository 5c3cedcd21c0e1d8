// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

// The sheet's content: one catalogue item with its files. Return plays the first of them.
RowPage {
    id: view

    required property var app // an AppState
    required property var item // a MediaItem

    signal dismissed()

    function play(file: var) {
        app.play(file, item, answer.details.subtitles);
    }
    function playFirst(event: KeyEvent) {
        if (!event.isAutoRepeat && files.rows[1]?.canPlay) // held since the sheet was asked for
            play(files.rows[1].file);
    }

    margin: 12
    model: files.rows
    title: qsTr("Files")

    Keys.onEnterPressed: event => view.playFirst(event)
    Keys.onReturnPressed: event => view.playFirst(event)

    ItemDetailModel {
        id: answer

        item: view.item

        onDetailsChanged: if (details) view.app.showDetails(details)
    }
    ItemFiles {
        id: files

        details: answer.details
    }

    delegate: FileRow {
        required property var modelData

        column: view.column
        record: modelData

        onDownload: file => view.app.download(file, view.item)
        onPlay: file => view.play(file)
    }
    head: [
        IconButton {
            anchors.right: parent.right
            anchors.rightMargin: 12 - Theme.inset
            color: Theme.secondary
            iconSize: Theme.title2
            round: true
            symbol: "xmark.circle.fill"
            text: qsTr("Close")

            onClicked: view.dismissed()
        },
        Row {
            spacing: Theme.inset
            width: parent.width

            Poster {
                height: 280
                radius: 10
                symbols: false
                url: view.item.thumbnailURL
                width: 200
            }
            ItemText {
                app: view.app
                item: view.item
                width: parent.width - x
            }
        },
        ItemStatus {
            error: answer.error
            files: files
            width: parent.width
        }
    ]
    outro: [
        IconLabel {
            symbol: "captions.bubble"
            text: files.subtitleCount + qsTr(" subtitle file(s) will be available in the player.")
            visible: files.subtitleCount > 0
            width: parent.width
        },
        PushButton {
            text: qsTr("Inspect Orvella .torrent")
            visible: files.hasTorrent

            onClicked: view.app.inspectTorrentURL(files.torrent)
        }
    ]
}
