// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// Opens an address in the user's browser.
T.AbstractButton {
    id: link

    required property var app // an AppState
    required property url destination
    property int pixelSize: Theme.callout

    activeFocusOnTab: true
    implicitHeight: contentItem.implicitHeight
    implicitWidth: contentItem.implicitWidth

    Accessible.name: text
    Accessible.role: Accessible.Link
    Keys.onEnterPressed: link.clicked()
    Keys.onReturnPressed: link.clicked()
    onClicked: app.openWebPage(destination)

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }

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
