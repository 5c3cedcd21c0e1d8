// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// A modal panel over the whole window. Escape and a click beside it close it; the focus stays in
// it until then, and returns to where it was.
T.Popup {
    id: sheet

    property string title

    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    focus: true
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    modal: true
    parent: T.Overlay.overlay
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? Math.round((parent.height - height) / 2) : 0

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }

    background: Rectangle {
        Accessible.name: sheet.title
        Accessible.role: Accessible.Dialog
        border.color: Theme.hairline
        color: Theme.bg
        radius: 12
    }
    enter: Transition {
        NumberAnimation {
            duration: Theme.fade
            from: 0
            property: "opacity"
            to: 1
        }
    }
}
