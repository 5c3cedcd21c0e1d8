// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Rectangle {
    id: panel

    required property string message
    property bool goesOnTrying: false // so that it may end by itself

    signal retry()
    signal close()

    Accessible.description: goesOnTrying ? message + " " + hope.text : message
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
        Label {
            id: hope

            color: Theme.secondary
            font.pixelSize: Theme.caption
            horizontalAlignment: Text.AlignHCenter
            text: qsTr("Tavelo goes on trying.")
            visible: panel.goesOnTrying
            width: parent.width
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
