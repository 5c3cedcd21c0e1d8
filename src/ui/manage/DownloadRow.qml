// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

ListRow {
    id: row

    required property var record // a DownloadTask
    required property int index

    signal pause(var id)
    signal resume(var id) // or try again
    signal cancel(var id)
    signal move(var id, int place)
    signal play(var task)
    signal showInFolder(url file)

    buttons: controls.shown
    implicitHeight: texts.height + 28
    lifted: grip.dragging
    movable: ListView.view?.count > 1
    remover: controls.remover
    z: lifted ? 2 : 1

    Accessible.description: [record.status, record.tip, movable ? grip.hint : ""]
                            .filter(part => part).join("\n")
    Accessible.name: record.title

    transform: Translate {
        y: grip.shift
    }

    onShifted: by => {
        const place = index + by;
        if (place >= 0 && place < ListView.view.count)
            move(record.id, place);
    }

    RowGrip {
        id: grip

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.top: parent.top
        place: row.index
        row: row
        visible: row.movable

        onDropped: place => row.move(row.record.id, place)
    }
    Column {
        id: texts

        anchors.left: parent.left
        anchors.leftMargin: row.movable ? grip.width + 4 : 16
        anchors.right: controls.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8

        Label {
            text: row.record.title
            width: parent.width
        }
        ProgressBar {
            Accessible.name: row.record.title
            value: row.record.progress
            visible: row.record.isUnderway
            width: parent.width
        }
        DownloadStatus {
            task: row.record
            width: parent.width
        }
    }
    DownloadButtons {
        id: controls

        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        ringed: row.ringed
        task: row.record

        onCancel: row.cancel(row.record.id)
        onPause: row.pause(row.record.id)
        onPlayFilm: row.play(row.record)
        onResume: row.resume(row.record.id)
        onShowInFolder: row.showInFolder(row.record.file)
    }
}
