// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// Drawn as a hairline, wide enough to be dragged; left and right move it too.
Item {
    id: divider

    property int sidebarWidth: 190

    function resize(to: real) {
        sidebarWidth = Math.max(170, Math.min(240, to));
    }

    activeFocusOnTab: true
    width: 9

    Accessible.description: qsTr("Left and right change it")
    Accessible.name: qsTr("Sidebar width")
    Accessible.role: Accessible.Splitter
    Keys.onLeftPressed: divider.resize(divider.sidebarWidth - 10)
    Keys.onRightPressed: divider.resize(divider.sidebarWidth + 10)
    // The film does not move while the divider does.
    Keys.onShortcutOverride: event =>
        event.accepted = event.key === Qt.Key_Left || event.key === Qt.Key_Right

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        color: divider.activeFocus ? Theme.accent
               : drag.active || hover.hovered ? Qt.rgba(1, 1, 1, 0.2) : Theme.hairline
        height: parent.height
        width: divider.activeFocus ? 2 : 1
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
            divider.resize(widthBefore + translation.x)
    }
}
