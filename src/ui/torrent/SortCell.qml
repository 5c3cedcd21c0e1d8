// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// The name of a column by which the table can be sorted: a press does so. Shift with an arrow key
// makes the column wider or narrower.
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
    Keys.onPressed: event => {
        const step = event.key === Qt.Key_Left ? 8 : event.key === Qt.Key_Right ? -8 : 0;
        event.accepted = step !== 0 && column >= 0 && event.modifiers === Qt.ShiftModifier;
        if (event.accepted)
            columns.resize(column, columns.widths[column] + step);
    }
    onClicked: results.sortBy(sortKey)

    HeaderEdge {
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
