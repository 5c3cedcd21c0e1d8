// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// Drawn as a hairline, wide enough to be dragged.
Item {
    id: divider

    property int sidebarWidth: 190

    width: 9

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        color: drag.active || hover.hovered ? Qt.rgba(1, 1, 1, 0.2) : Theme.hairline
        height: parent.height
        width: 1
    }
    HoverHandler {
        id: hover

        cursorShape: Qt.SplitHCursor
    }
    DragHandler {
        id: drag

        property int widthBefore: 190

        target: null

        onActiveChanged: widthBefore = divider.sidebarWidth
        onTranslationChanged: if (active)
            divider.sidebarWidth = Math.max(170, Math.min(240, widthBefore + translation.x))
    }
}
