// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// Something the program does, from its menu or by its keys; also while a panel lies over the window.
// Keys that a text field knows stay with the field that has the focus.
T.Action {
    id: command

    required property string keys
    property bool repeats: false

    readonly property Shortcut binding: Shortcut {
        autoRepeat: command.repeats
        context: Qt.ApplicationShortcut
        sequence: command.keys

        onActivated: command.trigger()
    }
    readonly property string hint: binding.nativeText
}
