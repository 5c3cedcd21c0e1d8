// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Column {
    id: error

    required property string message

    signal retry()

    spacing: 12

    IconLabel {
        pixelSize: Theme.body
        symbol: "wifi.exclamationmark"
        text: qsTr("Couldn't reach Orvella: ") + error.message
        width: parent.width
    }
    PushButton {
        text: qsTr("Retry")

        onClicked: error.retry()
    }
}
