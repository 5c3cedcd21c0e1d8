// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Row {
    id: row

    required property string text

    spacing: 10

    Spinner {
        anchors.verticalCenter: parent.verticalCenter
        size: 18
    }
    Label {
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondary
        text: row.text
    }
}
