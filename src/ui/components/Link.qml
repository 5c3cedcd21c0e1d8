// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// Opens an address in the user's browser.
Pressable {
    id: link

    required property var app // an AppState
    required property url destination
    property int pixelSize: Theme.callout

    implicitHeight: contentItem.implicitHeight
    implicitWidth: contentItem.implicitWidth

    Accessible.role: Accessible.Link
    onClicked: app.openWebPage(destination)

    background: Item {
        FocusRing {
            around: 4
            radius: 5
            shown: link.visualFocus
        }
    }
    contentItem: Label {
        Accessible.ignored: true
        color: Theme.accent
        font.pixelSize: link.pixelSize
        font.underline: link.hovered
        text: link.text
    }
}
