// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// Stands where a section's screen will be.
Item {
    required property var app // an AppState
    property alias title: label.text

    Label {
        id: label

        font.bold: true
        font.pixelSize: Theme.largeTitle
        heading: true
        x: Theme.inset
        y: Theme.inset
    }
    Label {
        anchors.centerIn: parent
        color: Theme.secondary
        text: qsTr("Not here yet.")
    }
}
