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
    // Once, however long it is held.
    Keys.onPressed: event => {
        const enters = event.key === Qt.Key_Return || event.key === Qt.Key_Enter;
        if (enters && !event.isAutoRepeat)
            button.clicked();
        event.accepted = enters || (event.key === Qt.Key_Space && event.isAutoRepeat);
    }
    Keys.onReleased: event =>
        event.accepted = event.key === Qt.Key_Space && event.isAutoRepeat
    // Before it is anybody's shortcut: the film's, where this is one of its buttons.
    Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Space

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
}
