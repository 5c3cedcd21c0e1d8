// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Window
import Tavelo

// A picture of the net in a rounded box: a spinner where it does not come at once, then the picture,
// or the film symbol.
Rectangle {
    id: poster

    property url url
    property bool symbols: true // without: the plain box while there is no picture
    property bool hovered: false
    property bool late: false

    readonly property bool missing: image.status === Image.Ready && image.implicitWidth === 0

    color: Theme.panel
    radius: Theme.radius

    Timer {
        interval: 150
        running: poster.symbols && image.status === Image.Loading

        onTriggered: poster.late = true
    }
    Icon {
        anchors.centerIn: parent
        color: Theme.tertiary
        name: poster.symbols && (image.status === Image.Null || poster.missing) ? "film" : ""
        size: Theme.largeTitle
    }
    Loader {
        active: poster.late
        anchors.centerIn: parent

        sourceComponent: Spinner {
            color: Theme.secondary
        }
    }
    Image {
        id: image

        anchors.fill: parent
        opacity: status === Image.Ready ? 1 : 0
        source: Format.poster(poster.url, Math.round(poster.radius * Screen.devicePixelRatio))
        sourceSize.height: poster.height
        sourceSize.width: poster.width

        Accessible.ignored: true
        onStatusChanged: if (status !== Image.Loading) poster.late = false

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.fade
            }
        }
    }
    Rectangle {
        anchors.fill: parent
        border.color: poster.hovered ? Qt.rgba(1, 1, 1, 0.22) : Theme.hairline
        color: "transparent"
        radius: poster.radius
    }
}
