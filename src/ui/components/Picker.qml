// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// One choice out of several, shown in its button.
PickerButton {
    id: picker

    required property var choices // of { text, value }
    required property var current

    signal chosen(var value)

    menu: choiceMenu
    value: choices.find(choice => choice.value === current)?.text ?? ""

    ChoiceMenu {
        id: choiceMenu

        choices: picker.choices
        current: picker.current
        width: Math.max(picker.width, implicitWidth)
        x: 0
        y: picker.height + 4

        onChosen: value => picker.chosen(value)
    }
}
