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

    readonly property bool missing: image.status === Image.Ready && image.implicitWidth === 0
    // Nothing came and nothing is known to come; what is asked for again need not show that it is.
    readonly property bool bare: image.status === Image.Null || missing
                                 || (image.status === Image.Loading && picture.askedAgain)

    color: Theme.panel
    radius: Theme.radius

    PosterSource {
        id: picture

        frame: poster
        missing: poster.missing
        radius: Math.round(poster.radius * Screen.devicePixelRatio)
        url: poster.url
    }
    Delay {
        id: delay

        interval: 150
        waiting: poster.symbols && image.status === Image.Loading && !picture.askedAgain
    }
    Icon {
        anchors.centerIn: parent
        color: Theme.tertiary
        name: poster.symbols && poster.bare ? "film" : ""
        size: Theme.largeTitle
    }
    Loader {
        active: delay.over
        anchors.centerIn: parent

        sourceComponent: Spinner {
            color: Theme.secondary
        }
    }
    Image {
        id: image

        anchors.fill: parent
        opacity: status === Image.Ready ? 1 : 0
        source: picture.source
        sourceSize.height: poster.height
        sourceSize.width: poster.width

        Accessible.ignored: true

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
