// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

Column {
    id: list

    required property string title
    required property var files
    property bool canDownload: false
    property bool canPlay: false

    signal download(var file)
    signal play(var file)

    spacing: 8

    Label {
        // The buttons say it too, and can be pressed.
        Accessible.ignored: list.canPlay
        font.pixelSize: Theme.headline
        font.weight: Font.DemiBold
        heading: true
        text: list.title
    }
    Rectangle {
        color: Theme.panel
        height: rows.height
        radius: Theme.radius
        width: parent.width

        Column {
            id: rows

            width: parent.width

            Repeater {
                model: list.files

                FileRow {
                    required property int index
                    required property var modelData

                    canDownload: list.canDownload
                    canPlay: list.canPlay
                    file: modelData
                    ruled: index > 0
                    width: rows.width

                    onDownload: list.download(modelData)
                    onPlay: list.play(modelData)
                }
            }
        }
    }
}
