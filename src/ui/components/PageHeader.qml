// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tavelo

// A screen's title, and at its far end the controls that stand for the whole screen.
RowLayout {
    id: header

    property string title
    default property alias controls: trailing.data

    spacing: Theme.grid

    Label {
        Layout.fillWidth: true
        font.bold: true
        font.pixelSize: Theme.largeTitle
        heading: true
        text: header.title
    }
    RowLayout {
        id: trailing

        Layout.minimumHeight: 32
        spacing: Theme.grid
    }
}
