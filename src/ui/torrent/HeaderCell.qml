// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A column's name.
HeaderLabel {
    id: cell

    required property ResultColumns columns
    property int column: -1

    descending: false
    height: 28
    leading: false
    lit: false
    trailing: false

    Accessible.name: text
    Accessible.role: Accessible.StaticText

    HeaderEdge {
        column: cell.column
        columns: cell.columns
    }
}
