// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// One choice of a menu; the one that holds is marked.
MenuRow {
    property bool chosen: false

    mark: chosen ? "✓" : ""
    marked: true // a column for marks, where one of the menu's rows can have one
    text: (chosen ? "✓ " : "") + label

    Accessible.checkable: true
    Accessible.checked: chosen
    Accessible.name: label
}
