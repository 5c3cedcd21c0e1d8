// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// One line to copy from.
FocusScope {
    id: line

    property alias text: input.text

    implicitHeight: input.implicitHeight
    implicitWidth: input.implicitWidth

    TextInput {
        id: input

        Accessible.name: text
        Accessible.readOnly: true
        Accessible.role: Accessible.EditableText
        activeFocusOnTab: true
        anchors.fill: parent
        clip: true
        color: Theme.secondary
        focus: true
        font.family: Fonts.fixed
        font.pixelSize: Theme.caption
        readOnly: true
        selectByMouse: true
        selectedTextColor: Theme.accentInk
        selectionColor: Theme.accent

        HoverHandler {
            cursorShape: Qt.IBeamCursor
        }
    }
    FocusRing {
        around: 4
        radius: 5
        shown: input.activeFocus
    }
}
