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
    Keys.onEnterPressed: button.clicked()
    Keys.onReturnPressed: button.clicked()

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
}
