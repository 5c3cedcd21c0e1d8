// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// Rows of a form on one panel, under a title.
Column {
    id: section

    required property string title
    default property alias rows: column.data

    spacing: Theme.grid

    Label {
        font.bold: true
        font.pixelSize: Theme.title3
        heading: true
        text: section.title
        width: parent.width
    }
    Rectangle {
        color: Theme.panel
        height: column.height
        radius: 10
        width: parent.width

        Column {
            id: column

            width: parent.width
        }
    }
}
