// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// The name of a column by which the table can be sorted: a press does so. Shift with an arrow key
// makes the column wider or narrower.
T.AbstractButton {
    id: cell

    required property TorrentResultModel results
    required property ResultColumns columns
    required property int sortKey // a TorrentSort
    property int column: -1
    property bool trailing: false // at the end of its cell, as numbers are

    readonly property bool leading: results.sortKey === sortKey

    activeFocusOnTab: true
    focusPolicy: Qt.TabFocus
    height: 28

    Accessible.description: !leading ? "" : results.descending ? qsTr("Sorted, descending")
                                                               : qsTr("Sorted, ascending")
    Accessible.name: text
    Keys.onEnterPressed: cell.clicked()
    Keys.onPressed: event => {
        const step = event.key === Qt.Key_Left ? 8 : event.key === Qt.Key_Right ? -8 : 0;
        event.accepted = step !== 0 && column >= 0 && event.modifiers === Qt.ShiftModifier;
        if (event.accepted)
            columns.resize(column, columns.widths[column] + step);
    }
    Keys.onReturnPressed: cell.clicked()
    onClicked: results.sortBy(sortKey)

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
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
