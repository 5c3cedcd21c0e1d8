// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// Laid around the control in which it stands.
Rectangle {
    property bool shown: false
    property int around: 2

    anchors.fill: parent
    anchors.margins: -around
    border.color: Theme.accent
    border.width: 2
    color: "transparent"
    radius: Theme.radius + around
    visible: shown
}
