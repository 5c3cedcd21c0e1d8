// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tavelo

Rectangle {
    id: controls

    required property var player // a VideoPlayerManager
    required property var subtitles // a SubtitleManager

    readonly property bool menuOpen: captions.menuOpen || audio.menuOpen || speed.menuOpen || aspect.menuOpen
    readonly property bool busy: menuOpen || scrubber.scrubbing || volume.pressed

    signal fullScreenToggled()

    implicitHeight: column.implicitHeight + 28 + 28

    gradient: Gradient {
        GradientStop {
            color: "transparent"
            position: 0
        }
        GradientStop {
            color: Qt.rgba(0, 0, 0, 0.8)
            position: 1
        }
    }

    Shield {
    }

    ColumnLayout {
        id: column

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.margins: 14
        anchors.right: parent.right
        spacing: 6

        Scrubber {
            id: scrubber

            Layout.fillWidth: true
            player: controls.player
        }
        RowLayout {
            spacing: 4

            TransportButtons {
                iconSize: 22
                playSize: 30
                player: controls.player
                spacing: 4
            }
            IconButton {
                Layout.leftMargin: 8
                iconSize: 22
                symbol: controls.player.isMuted || controls.player.volume === 0
                        ? "speaker.slash.fill" : "speaker.wave.2.fill"
                text: controls.player.isMuted ? qsTr("Unmute") : qsTr("Mute")

                onClicked: controls.player.isMuted = !controls.player.isMuted
            }
            ValueSlider {
                id: volume

                Accessible.name: qsTr("Volume")
                Accessible.onDecreaseAction: controls.player.adjustVolume(-0.1)
                Accessible.onIncreaseAction: controls.player.adjustVolume(0.1)
                Layout.preferredWidth: 90
                value: controls.player.volume

                onMoved: controls.player.chooseVolume(value)
            }
            Item {
                Layout.fillWidth: true
            }
            SubtitleMenu {
                id: captions

                subtitles: controls.subtitles
            }
            MenuButton {
                id: audio

                choices: Array.from(controls.player.audioOptions,
                                    track => ({ text: track.name, value: track.id }))
                current: controls.player.selectedAudio
                symbol: "waveform"
                text: qsTr("Audio track")
                visible: choices.length >= 2

                onChosen: id => controls.player.selectAudio(id)
            }
            MenuButton {
                id: speed

                choices: [
                    { text: "0.5x", value: 0.5 },
                    { text: "0.75x", value: 0.75 },
                    { text: "1.0x", value: 1 },
                    { text: "1.25x", value: 1.25 },
                    { text: "1.5x", value: 1.5 },
                    { text: "2.0x", value: 2 }
                ]
                current: controls.player.rate
                label: Format.rate(controls.player.rate)
                text: qsTr("Playback speed")

                onChosen: rate => controls.player.setRate(rate)
            }
            MenuButton {
                id: aspect

                choices: [
                    { text: "Fit", value: "Fit" },
                    { text: "Fill", value: "Fill" },
                    { text: "Stretch", value: "Stretch" }
                ]
                current: controls.player.aspect
                symbol: "aspectratio"
                text: qsTr("Aspect ratio")

                onChosen: name => controls.player.aspect = name
            }
            IconButton {
                symbol: "arrow.up.left.and.arrow.down.right"
                text: qsTr("Full screen")

                onClicked: controls.fullScreenToggled()
            }
        }
    }
}
