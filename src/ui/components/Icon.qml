// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Window
import Tavelo

Image {
    id: icon

    required property string name
    property color color: Theme.primary
    property int size: 20

    readonly property int pixels: Math.round(size * Screen.devicePixelRatio)

    height: size
    source: name === "" ? "" : "image://icon/" + name + "/" + color.toString().slice(1)
    sourceSize.height: pixels
    sourceSize.width: pixels
    width: size

    Accessible.ignored: true
}
