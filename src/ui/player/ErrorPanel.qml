// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Rectangle {
    id: panel

    required property string message

    signal retry()
    signal close()

    Accessible.name: qsTr("Playback error")
    Accessible.role: Accessible.AlertMessage
    border.color: Theme.hairline
    color: Theme.material
    implicitHeight: column.height + 48
    radius: 14

    Shield {
    }

    Column {
        id: column

        anchors.centerIn: parent
        spacing: 10
        width: parent.width - 48

        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            color: Theme.warning
            name: "exclamationmark.triangle"
            size: 32
        }
        Label {
            font.pixelSize: Theme.headline
            font.weight: Font.DemiBold
            heading: true
            horizontalAlignment: Text.AlignHCenter
            text: qsTr("Playback error")
            width: parent.width
        }
        Label {
            color: Theme.secondary
            font.pixelSize: Theme.callout
            horizontalAlignment: Text.AlignHCenter
            text: panel.message
            width: parent.width
            wrapMode: Text.Wrap
        }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 10

            PushButton {
                prominent: true
                text: qsTr("Retry")

                onClicked: panel.retry()
            }
            PushButton {
                text: qsTr("Close")

                onClicked: panel.close()
            }
        }
    }
}
