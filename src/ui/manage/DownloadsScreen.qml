// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

ListPage {
    id: screen

    required property var app // an AppState

    delegate: DownloadRow {
        column: screen.column

        onCancel: id => screen.app.downloads.cancel(id)
        onMove: (id, place) => screen.app.downloads.move(id, place)
        onPause: id => screen.app.downloads.pause(id)
        onPlay: task => screen.app.playDownload(task)
        onResume: id => screen.app.downloads.resume(id)
        onShowInFolder: file => screen.app.showInFileManager(file)
    }
    intro: [
        Label {
            color: Theme.secondary
            font.pixelSize: Theme.caption
            text: StorageText.freeSpace(screen.app.cache.freeBytes)
        },
        Label {
            color: Theme.secondary
            text: qsTr("No active downloads.")
            visible: screen.app.downloads.tasks.length === 0
        }
    ]
    model: ListAdaptor {
        key: "id"
        records: screen.app.downloads.tasks
    }
    outro: Label {
        color: Theme.secondary
        font.pixelSize: Theme.caption
        text: qsTr("Quitting loses nothing: downloads go on where they were when Tavelo starts "
                   + "again, and finished files are always kept.")
        width: parent.width
        wrapMode: Text.Wrap
    }
    title: qsTr("Downloads")

    PushButton {
        text: qsTr("Clear Finished")

        onClicked: screen.app.downloads.clearFinished()
    }
}
