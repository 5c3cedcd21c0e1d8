// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// A button without a look of its own; Return presses it, as Space does.
T.AbstractButton {
    id: button

    activeFocusOnTab: true
    focusPolicy: Qt.TabFocus

    Accessible.name: text
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            button.clicked();
    }
    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat)
            button.clicked();
    }
    // Before it is anybody's shortcut: the film's, where this is one of its buttons.
    Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Space

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
}
