// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma Singleton

import QtQuick

QtObject {
    readonly property color bg: Qt.rgba(0.07, 0.07, 0.09, 1)
    readonly property color panel: Qt.rgba(0.11, 0.11, 0.14, 1)
    readonly property color accent: Qt.rgba(0.95, 0.35, 0.40, 1)
    readonly property color warning: "#ff9f45"
    readonly property color good: "#4fcb7c"
    readonly property color bad: "#ff6961"

    readonly property color primary: Qt.rgba(1, 1, 1, 0.92)
    readonly property color secondary: Qt.rgba(1, 1, 1, 0.60)
    readonly property color tertiary: Qt.rgba(1, 1, 1, 0.38)
    readonly property color accentInk: "#ffffff"

    readonly property color sidebar: Qt.rgba(0.09, 0.09, 0.115, 1)
    readonly property color hairline: Qt.rgba(1, 1, 1, 0.08)
    readonly property color fill: Qt.rgba(1, 1, 1, 0.07)
    readonly property color fillHovered: Qt.rgba(1, 1, 1, 0.12)
    readonly property color fillPressed: Qt.rgba(1, 1, 1, 0.05)
    readonly property color material: Qt.rgba(0.13, 0.13, 0.165, 0.88)
    readonly property color popup: Qt.rgba(0.155, 0.155, 0.19, 1)
    readonly property color scrim: Qt.rgba(0, 0, 0, 0.6)

    // Type, in pixels.
    readonly property int largeTitle: 28
    readonly property int title: 24
    readonly property int title2: 20
    readonly property int title3: 17
    readonly property int headline: 15
    readonly property int body: 14
    readonly property int callout: 13
    readonly property int caption: 12
    readonly property int caption2: 11

    readonly property int grid: 8
    readonly property int inset: 24
    readonly property int radius: 8

    // Milliseconds.
    readonly property int quick: 120
    readonly property int fade: 150
}
