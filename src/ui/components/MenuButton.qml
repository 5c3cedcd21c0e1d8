// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A button whose menu offers one choice out of several. `label` stands in the place of a symbol.
PopupButton {
    id: button

    required property var choices // of { text, value }
    property var current

    signal chosen(var value)

    menu: ChoiceMenu {
        choices: button.choices
        current: button.current

        onChosen: value => button.chosen(value)
    }
}
