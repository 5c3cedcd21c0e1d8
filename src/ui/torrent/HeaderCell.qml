// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// A column's name. Where the table can be sorted by it, a press does so; a drag of its left edge, or
// Shift with an arrow key, makes the column wider or narrower.
T.AbstractButton {
    id: cell

    required property TorrentResultModel results
    property int sortKey: -1 // a TorrentSort; negative: not to be sorted by
    property bool trailing: false // at the end of its cell, as numbers are
    property ResultColumns columns: null
    property int column: -1

    readonly property bool sortable: sortKey >= 0
    readonly property bool leading: sortable && results.sortKey === sortKey
    readonly property bool resizable: column >= 0

    function resizeBy(step: real) {
        if (resizable)
            columns.resize(column, columns.widths[column] + step);
    }

    activeFocusOnTab: sortable
    focusPolicy: sortable ? Qt.TabFocus : Qt.NoFocus
    implicitHeight: 28

    Accessible.description: !leading ? "" : results.descending ? qsTr("Sorted, descending")
                                                               : qsTr("Sorted, ascending")
    Accessible.name: text
    Accessible.role: sortable ? Accessible.Button : Accessible.StaticText
    Keys.onEnterPressed: cell.clicked()
    Keys.onPressed: event => {
        const step = event.key === Qt.Key_Left ? 8 : event.key === Qt.Key_Right ? -8 : 0;
        event.accepted = step !== 0 && event.modifiers === Qt.ShiftModifier;
        if (event.accepted)
            resizeBy(step);
    }
    Keys.onReturnPressed: cell.clicked()
    onClicked: if (sortable) results.sortBy(sortKey)

    HoverHandler {
        cursorShape: cell.sortable ? Qt.PointingHandCursor : Qt.ArrowCursor
    }
    HeaderEdge {
        property real widthBefore: 0

        visible: cell.resizable

        onGrabbed: widthBefore = cell.columns.widths[cell.column]
        onMoved: by => cell.columns.resize(cell.column, widthBefore - by)
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
        lit: cell.leading || (cell.sortable && cell.hovered)
        text: cell.text
        trailing: cell.trailing
    }
}
