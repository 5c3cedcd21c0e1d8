// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Image {
    id: icon

    required property string name
    property color color: Theme.primary
    property int size: 20

    height: size
    source: name === "" ? "" : "image://icon/" + name + "/" + color.toString().slice(1)
    sourceSize.height: size
    sourceSize.width: size
    width: size

    Accessible.ignored: true
}
