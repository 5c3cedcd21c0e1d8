// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// The name of a column by which the table can be sorted: a press does so.
Pressable {
    id: cell

    required property TorrentResultModel results
    required property ResultColumns columns
    required property int sortKey // a TorrentSort
    property int column: -1
    property bool trailing: false // at the end of its cell, as numbers are

    readonly property bool leading: results.sortKey === sortKey

    height: 28

    Accessible.description: !leading ? "" : results.descending ? qsTr("Sorted, descending")
                                                               : qsTr("Sorted, ascending")
    Keys.forwardTo: [edge]
    onClicked: results.sortBy(sortKey)

    HeaderEdge {
        id: edge

        column: cell.column
        columns: cell.columns
    }

    background: Item {
        FocusRing {
            around: 0
            radius: 5
            shown: cell.visualFocus
        }
    }
    contentItem: HeaderLabel {
        descending: cell.results.descending
        leading: cell.leading
        lit: cell.leading || cell.hovered
        text: cell.text
        trailing: cell.trailing
    }
}
