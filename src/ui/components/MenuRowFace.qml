// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// What a row of a menu shows: a mark, in a column of its own where there is one, a text, a hint.
Item {
    id: face

    required property string text
    property string mark: ""
    property bool marked: false
    property string hint: ""
    property color hintInk: Theme.secondary

    implicitHeight: name.implicitHeight
    implicitWidth: Math.ceil(name.x + name.implicitWidth
                             + (hint === "" ? 0 : keys.implicitWidth + 32))

    Label {
        Accessible.ignored: true
        anchors.verticalCenter: parent.verticalCenter
        font.pixelSize: Theme.callout
        text: face.mark
    }
    Label {
        id: name

        Accessible.ignored: true
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideMiddle
        font.pixelSize: Theme.callout
        text: face.text
        width: Math.min(implicitWidth, parent.width - x)
        x: face.marked ? 20 : 0
    }
    Label {
        id: keys

        Accessible.ignored: true
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        color: face.hintInk
        font.pixelSize: Theme.callout
        text: face.hint
    }
}
