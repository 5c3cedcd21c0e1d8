// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// A row of a menu that says something and does nothing. Without a text it is not there.
T.MenuItem {
    id: note

    property color ink: Theme.secondary

    bottomPadding: 5
    enabled: false
    height: visible ? implicitHeight : 0
    hoverEnabled: false
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    implicitWidth: visible ? Math.min(Math.ceil(implicitContentWidth), 280) + leftPadding
                             + rightPadding : 0
    leftPadding: 8
    rightPadding: 8
    topPadding: 5
    visible: text !== ""
    width: ListView.view ? ListView.view.width : implicitWidth

    Accessible.name: text
    Accessible.role: Accessible.StaticText

    contentItem: Label {
        Accessible.ignored: true
        color: note.ink
        elide: Text.ElideNone
        font.pixelSize: Theme.caption
        text: note.text
        wrapMode: Text.Wrap
    }
}
