// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tavelo

// The results. The arrow keys and their neighbours move the current row; Return and the menu key
// open its menu.
FocusScope {
    id: table

    required property var app // an AppState
    required property TorrentResultModel results

    function openMenu(row: int, x: real, y: real) {
        results.currentRow = row;
        actions.result = results.resultAt(row);
        menu.wantedX = x;
        menu.y = y + list.y + row * list.rowHeight - list.contentY + list.originY;
        menu.open();
    }

    ResultColumns {
        id: layout

        available: table.width
    }
    TorrentActions {
        id: actions

        app: table.app
    }
    ResultHeader {
        id: header

        columns: layout
        results: table.results
        width: parent.width
    }
    ListView {
        id: list

        readonly property int rowHeight: 36
        readonly property real scrolled: contentY - originY
        readonly property bool currentInView: {
            const y = table.results.currentRow * rowHeight;
            return table.results.currentRow >= 0 && y + rowHeight > scrolled && y < scrolled + height;
        }
        readonly property int pageRows: Math.max(1, Math.floor(height / rowHeight) - 1)
        // The current row stays where it is when results come in, else the first in view.
        readonly property int held: currentInView ? table.results.currentRow
                                                  : scrolled > 0 ? Math.floor(scrolled / rowHeight) : -1

        function go(row: int) {
            const last = table.results.count - 1;
            table.results.currentRow = Math.max(Math.min(0, last), Math.min(last, row));
            if (last >= 0)
                positionViewAtIndex(table.results.currentRow, ListView.Contain);
        }

        Accessible.name: qsTr("Results")
        Accessible.role: Accessible.List
        activeFocusOnTab: table.results.count > 0
        anchors.bottom: parent.bottom
        anchors.top: header.bottom
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        currentIndex: -1
        focus: true
        keyNavigationEnabled: false
        model: table.results
        reuseItems: true
        topMargin: 2
        width: parent.width

        T.ScrollBar.vertical: ScrollThumb {
        }

        Keys.onPressed: event => {
            const row = table.results.currentRow;
            event.accepted = true;
            switch (event.key) {
            case Qt.Key_Up: return go(row - 1);
            case Qt.Key_Down: return go(row + 1);
            case Qt.Key_PageUp: return go(row - pageRows);
            case Qt.Key_PageDown: return go(row + pageRows);
            case Qt.Key_Home: return go(0);
            case Qt.Key_End: return go(table.results.count - 1);
            case Qt.Key_F10:
                if (event.modifiers !== Qt.ShiftModifier)
                    break;
            // falls through
            case Qt.Key_Menu:
            case Qt.Key_Return:
            case Qt.Key_Enter:
            case Qt.Key_Space:
                go(row);
                if (table.results.count > 0)
                    table.openMenu(table.results.currentRow, width, rowHeight);
                return;
            }
            event.accepted = false;
        }
        onActiveFocusChanged: if (activeFocus && table.results.currentRow < 0)
            go(Math.ceil(scrolled / rowHeight));
        onHeldChanged: table.results.heldRow = held

        delegate: ResultRow {
            id: shown

            required property int index

            columns: layout
            current: index === table.results.currentRow
            height: list.rowHeight
            ringed: current && list.activeFocus
            width: ListView.view.width

            onCutTitleHovered: hovered => fullTitle.row = hovered ? shown : null
            onMenuWanted: (x, y) => {
                list.forceActiveFocus(Qt.MouseFocusReason);
                table.openMenu(index, x, y);
            }
            onPressed: {
                table.results.currentRow = index;
                list.forceActiveFocus(Qt.MouseFocusReason);
            }
        }
    }
    Tip {
        id: fullTitle

        property ResultRow row: null

        delay: 600
        parent: row ?? list
        text: row?.title ?? ""
        visible: row !== null && !list.moving
        width: Math.min(implicitWidth, table.width - 24)
        x: 0
    }
    ChoiceMenu {
        id: menu

        property real wantedX: 0

        choices: actions.choices
        closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
        x: Math.min(wantedX, table.width - width)

        onChosen: value => actions.perform(value)
    }
    Connections {
        function onFilterChanged() {
            list.positionViewAtBeginning();
        }
        function onHeldRowMoved(by: int) {
            list.contentY += by * list.rowHeight;
        }
        function onOrderChanged() {
            list.positionViewAtBeginning();
        }

        target: table.results
    }
}
