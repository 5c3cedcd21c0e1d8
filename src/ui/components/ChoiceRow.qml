// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// One choice of a menu; the one that holds is marked.
MenuRow {
    property bool chosen: false

    mark: chosen ? "✓" : ""
    marked: true
    text: (chosen ? "✓ " : "") + label

    Accessible.checkable: true
    Accessible.checked: chosen
    Accessible.name: label
}
