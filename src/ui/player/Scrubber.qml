// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tavelo

// Time, bar, length. While it is dragged it follows the pointer; the film is sought once, at the end.
RowLayout {
    id: scrubber

    required property var player // a VideoPlayerManager

    property real scrub: -1 // seconds; negative: not dragged
    readonly property bool scrubbing: scrub >= 0
    readonly property real shownTime: scrubbing ? scrub : player.currentTime

    spacing: 10

    ClockLabel {
        Layout.leftMargin: Math.max(0, total.implicitWidth - implicitWidth)
        text: Format.time(scrubber.shownTime)
    }
    ValueSlider {
        id: slider

        objectName: "position"

        Accessible.name: qsTr("Position")
        Accessible.onDecreaseAction: scrubber.player.seekBy(-10)
        Accessible.onIncreaseAction: scrubber.player.seekBy(10)
        Layout.fillWidth: true
        enabled: scrubber.player.duration > 0
        to: Math.max(scrubber.player.duration, 1)
        trackColor: Qt.rgba(1, 1, 1, 0.15)
        value: Math.min(scrubber.shownTime, to) // again once the length is known

        onMoved: scrubber.scrub = value
        onPressedChanged: {
            if (pressed || !scrubber.scrubbing)
                return;
            scrubber.player.seek(scrubber.scrub);
            scrubber.scrub = -1;
        }

        Rectangle {
            readonly property real fraction: scrubber.player.duration > 0
                ? Math.min(scrubber.player.bufferedTo / scrubber.player.duration, 1) : 0

            anchors.verticalCenter: parent.verticalCenter
            color: Qt.rgba(1, 1, 1, 0.15)
            height: 4
            radius: 2
            width: parent.width * fraction
            z: -1
        }
        HoverHandler {
            id: hover
        }
        Rectangle {
            // Along the way of the thumb's middle, as the slider itself reckons.
            readonly property real at: scrubber.scrubbing
                ? slider.visualPosition
                : Math.max(0, Math.min(1, (hover.point.position.x - slider.handle.width / 2)
                                          / (slider.width - slider.handle.width)))
            readonly property real middle: slider.handle.width / 2
                                           + at * (slider.width - slider.handle.width)

            color: Theme.popup
            height: 24
            radius: 5
            visible: (hover.hovered || scrubber.scrubbing) && slider.enabled
            width: bubble.implicitWidth + 14
            x: Math.max(0, Math.min(slider.width - width, middle - width / 2))
            y: -30

            ClockLabel {
                id: bubble

                Accessible.ignored: true
                anchors.centerIn: parent
                text: Format.time(parent.at * slider.to)
            }
        }
    }
    ClockLabel {
        id: total

        text: Format.time(scrubber.player.duration)
    }
}
