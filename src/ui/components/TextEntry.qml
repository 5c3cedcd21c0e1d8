// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// A line of text to fill in. Its placeholder is also its name.
T.TextField {
    id: entry

    property string symbol: ""

    function openMenu(at: point) {
        menu.x = at.x;
        menu.y = at.y;
        menu.open();
    }

    activeFocusOnTab: true
    color: Theme.primary
    font.family: Fonts.text
    font.pixelSize: Theme.body
    implicitHeight: 32
    implicitWidth: 200
    leftPadding: symbol === "" ? 10 : 32
    maximumLength: 1 << 20 // a magnet link with many trackers is long
    opacity: enabled ? 1 : 0.4
    persistentSelection: menu.visible
    placeholderTextColor: Theme.tertiary
    rightPadding: 10
    selectByMouse: true
    selectedTextColor: Theme.accentInk
    selectionColor: Theme.accent
    verticalAlignment: TextInput.AlignVCenter

    Accessible.name: placeholderText
    Accessible.role: Accessible.EditableText
    Keys.onMenuPressed: openMenu(Qt.point(cursorRectangle.x, cursorRectangle.bottom))

    TapHandler {
        acceptedButtons: Qt.RightButton

        onTapped: event => entry.openMenu(event.position)
    }
    TextMenu {
        id: menu

        field: entry
    }
    HoverHandler {
        cursorShape: Qt.IBeamCursor
    }
    Icon {
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.tertiary
        name: entry.symbol
        size: 16
        visible: entry.symbol !== ""
        x: 10
    }
    Label {
        Accessible.ignored: true
        anchors.fill: parent
        anchors.leftMargin: entry.leftPadding
        anchors.rightMargin: entry.rightPadding
        color: entry.placeholderTextColor
        font: entry.font
        text: entry.placeholderText
        verticalAlignment: Text.AlignVCenter
        visible: entry.text === "" && entry.preeditText === ""
    }

    background: Rectangle {
        border.color: entry.activeFocus ? Theme.accent : Theme.hairline
        border.width: entry.activeFocus ? 2 : 1
        color: Theme.fill
        radius: 7
    }
}
