// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

PosterCard {
    id: card

    required property int index
    required property var record
    required property Shelf shelf

    ringed: ListView.isCurrentItem && ListView.view.activeFocus
    title: record.title

    onClicked: shelf.choose(index, record)
}
