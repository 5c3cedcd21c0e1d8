// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A screen that is one long list under a title.
RowPage {
    id: page

    property alias intro: intro.data // between the title and the rows
    default property alias controls: header.controls

    head: [
        PageHeader {
            id: header

            title: page.title
            width: parent.width
        },
        Column {
            id: intro

            spacing: 16
            visible: children.length > 0
            width: parent.width
        }
    ]
}
