// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

// Small buttons in a row that scrolls sideways. One stop for the Tab key, as a shelf is.
ListView {
    id: chips

    required property string title
    required property var labels // texts
    property int chosen: -1 // the place of a tinted one

    signal picked(int index)

    boundsBehavior: Flickable.StopAtBounds
    height: 34
    highlightMoveDuration: 150
    leftMargin: Theme.inset
    orientation: ListView.Horizontal
    preferredHighlightBegin: Theme.inset
    preferredHighlightEnd: width - Theme.inset
    rightMargin: Theme.inset
    spacing: 8

    Accessible.name: title
    Accessible.role: Accessible.List
    activeFocusOnTab: true
    Keys.onEnterPressed: chips.picked(currentIndex)
    Keys.onReturnPressed: chips.picked(currentIndex)
    Keys.onSpacePressed: chips.picked(currentIndex)
    onChosenChanged: if (chosen >= 0) currentIndex = chosen

    delegate: PushButton {
        id: chip

        required property int index
        required property string record

        readonly property bool tinted: index === chips.chosen

        activeFocusOnTab: false
        focusPolicy: Qt.NoFocus
        prominent: tinted
        ringed: ListView.isCurrentItem && chips.activeFocus
        small: true
        text: chip.record
        y: 3

        Accessible.checkable: chips.chosen >= 0
        Accessible.checked: tinted
        onClicked: {
            chips.currentIndex = index;
            chips.picked(index);
        }
    }
    model: ListAdaptor {
        records: chips.labels
    }

    SidewaysWheel {
        row: chips
    }
}
