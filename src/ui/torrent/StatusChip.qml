// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Rectangle {
    id: plate

    required property var chip // a ProviderChip

    color: Theme.panel
    implicitHeight: row.implicitHeight + 6
    implicitWidth: row.implicitWidth + 16
    radius: height / 2

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 4

        Spinner {
            anchors.verticalCenter: parent.verticalCenter
            size: 12
            visible: plate.chip.symbol === ""
        }
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            color: plate.chip.failed ? Theme.bad : Theme.good
            name: plate.chip.symbol
            size: 14
            visible: plate.chip.symbol !== ""
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            font.pixelSize: Theme.caption
            text: plate.chip.text
        }
    }
}
