// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tavelo

// The strip below the section screens. The window's one surface lies over its left end.
Rectangle {
    id: mini

    required property var app // an AppState

    readonly property var player: app.playback.player

    color: Theme.panel
    implicitHeight: 92

    Rectangle {
        color: Theme.hairline
        height: 1
        width: parent.width
    }
    RowLayout {
        anchors.fill: parent
        anchors.margins: 10
        spacing: 12

        Item {
            Layout.preferredHeight: 72
            Layout.preferredWidth: 128
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2

            Label {
                Layout.fillWidth: true
                font.pixelSize: Theme.headline
                font.weight: Font.DemiBold
                horizontalAlignment: Text.AlignLeft
                text: mini.app.playback.nowPlaying?.title ?? ""
            }
            Label {
                Accessible.role: Accessible.AlertMessage
                Layout.fillWidth: true
                color: Theme.secondary
                font.pixelSize: Theme.caption
                text: mini.player.trouble || qsTr("Buffering…")
                visible: mini.player.isBuffering
            }
            ClockLabel {
                color: Theme.secondary
                text: Format.time(mini.player.currentTime) + " / "
                      + Format.time(mini.player.duration)
                visible: !mini.player.isBuffering
            }
        }
        TransportButtons {
            player: mini.player
            spacing: 12
        }
        IconButton {
            symbol: "arrow.up.left.and.arrow.down.right"
            text: qsTr("Expand")

            onClicked: mini.app.showPlayer = true
        }
        IconButton {
            symbol: "xmark"
            text: qsTr("Close player")

            onClicked: mini.app.playback.stopPlayback()
        }
    }
}
