// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// One thing that a menu does. `mark` stands before it where `marked` keeps a column for marks,
// `hint` at its far end.
T.MenuItem {
    id: row

    required property string label
    property string mark: ""
    property bool marked: false
    property string hint: ""

    readonly property bool lit: highlighted || hovered

    implicitHeight: 28
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    leftPadding: 8
    opacity: enabled ? 1 : 0.4
    rightPadding: marked ? 16 : 8
    text: label
    width: ListView.view ? ListView.view.width : implicitWidth

    Accessible.name: text

    background: Rectangle {
        color: row.lit ? Theme.accent : "transparent"
        radius: 5
    }
    contentItem: MenuRowFace {
        hint: row.hint
        hintInk: row.lit ? Theme.accentInk : Theme.secondary
        mark: row.mark
        marked: row.marked
        text: row.label
    }
}
