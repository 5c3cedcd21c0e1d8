// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A column's name.
HeaderLabel {
    id: cell

    required property ResultColumns columns
    property int column: -1

    activeFocusOnTab: true
    descending: false
    height: 28
    leading: false
    lit: false
    trailing: false

    Accessible.name: text
    Accessible.role: Accessible.StaticText
    Keys.forwardTo: [edge]

    FocusRing {
        around: 0
        radius: 5
        shown: cell.activeFocus
    }
    HeaderEdge {
        id: edge

        column: cell.column
        columns: cell.columns
    }
}
