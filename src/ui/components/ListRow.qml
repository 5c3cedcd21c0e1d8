// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A row of a ListPage, mostly a panel with buttons that the page's keys reach.
Item {
    id: row

    property var buttons: [] // those that show, from left to right
    property Item remover: null // the one of them that takes the row away
    property int column: 0 // the page's
    property bool bare: false // without a panel
    property bool movable: false // to another place of the list
    property bool lifted: false // on its way there, over the others
    default property alias content: panel.data

    readonly property Item ringed: ListView.isCurrentItem && ListView.view.activeFocus
                                   ? buttons[Math.min(column, buttons.length - 1)] ?? null : null

    signal shifted(int by) // asks for another place, so many rows on

    implicitHeight: 56
    width: ListView.view?.width ?? 0

    Accessible.role: Accessible.ListItem

    Rectangle {
        id: panel

        anchors.fill: parent
        anchors.leftMargin: Theme.inset
        anchors.rightMargin: Theme.inset
        border.color: row.lifted ? Theme.hairline : "transparent"
        color: row.bare ? "transparent" : row.lifted ? Theme.popup : Theme.panel
        radius: Theme.radius
    }
}
