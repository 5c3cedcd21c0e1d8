// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// The sheet's content: one catalogue item with its files.
FocusScope {
    id: view

    required property var app // an AppState
    required property var item // a MediaItem

    signal dismissed()

    ItemDetailModel {
        id: model

        item: view.item
    }
    ScrollKeys {
        id: keys

        view: flick
    }
    Flickable {
        id: flick

        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        contentHeight: column.height
        flickableDirection: Flickable.VerticalFlick
        focus: true

        T.ScrollBar.vertical: ScrollThumb {
        }

        Keys.onEnterPressed: files.playFirst()
        Keys.onReturnPressed: files.playFirst()
        Keys.forwardTo: [keys]

        Column {
            id: column

            bottomPadding: Theme.inset
            spacing: Theme.grid
            topPadding: 12
            width: flick.width

            IconButton {
                anchors.right: parent.right
                anchors.rightMargin: 12
                color: Theme.secondary
                iconSize: Theme.title2
                round: true
                symbol: "xmark.circle.fill"
                text: qsTr("Close")

                onClicked: view.dismissed()
            }
            Row {
                spacing: Theme.inset
                width: parent.width - 2 * Theme.inset
                x: Theme.inset

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
            }
            ItemFiles {
                id: files

                details: model.details
                error: model.error
                topPadding: Theme.grid
                width: parent.width - 2 * Theme.inset
                x: Theme.inset

                onDownload: file => view.app.download(file, view.item)
                onInspect: url => view.app.inspectTorrentURL(url)
                onPlay: file => view.app.play(file, view.item, model.details.subtitles)
            }
        }
    }
}
