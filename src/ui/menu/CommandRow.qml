// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

MenuRow {
    required property Command command

    hint: command.hint
    label: command.text

    onTriggered: command.trigger()
}
