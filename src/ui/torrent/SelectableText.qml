// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// One line to copy from.
TextInput {
    activeFocusOnTab: true
    clip: true
    color: Theme.secondary
    font.family: Fonts.fixed
    font.pixelSize: Theme.caption
    readOnly: true
    selectByMouse: true
    selectedTextColor: Theme.accentInk
    selectionColor: Theme.accent

    Accessible.name: text
    Accessible.readOnly: true
    Accessible.role: Accessible.EditableText

    HoverHandler {
        cursorShape: Qt.IBeamCursor
    }
    FocusRing {
        around: 4
        radius: 5
        shown: parent.activeFocus
    }
}
