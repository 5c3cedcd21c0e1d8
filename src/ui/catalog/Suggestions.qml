// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

// Subject words, each of which starts a search. One stop for the Tab key, as a shelf is.
FocusScope {
    id: suggestions

    required property var words

    signal chosen(string word)

    implicitHeight: caption.height + 6 + row.height

    Label {
        id: caption

        Accessible.ignored: true
        color: Theme.secondary
        font.pixelSize: Theme.caption
        text: qsTr("Search Suggestions")
        x: Theme.inset
    }
    ListView {
        id: row

        Accessible.name: caption.text
        Accessible.role: Accessible.List
        activeFocusOnTab: true
        anchors.top: caption.bottom
        anchors.topMargin: 6
        boundsBehavior: Flickable.StopAtBounds
        focus: true
        height: 34
        highlightMoveDuration: 150
        leftMargin: Theme.inset
        orientation: ListView.Horizontal
        preferredHighlightBegin: Theme.inset
        preferredHighlightEnd: width - Theme.inset
        rightMargin: Theme.inset
        spacing: 8
        width: parent.width

        Keys.onEnterPressed: suggestions.chosen(suggestions.words[currentIndex])
        Keys.onReturnPressed: suggestions.chosen(suggestions.words[currentIndex])
        Keys.onSpacePressed: suggestions.chosen(suggestions.words[currentIndex])

        delegate: PushButton {
            id: chip

            required property int index
            required property string record

            activeFocusOnTab: false
            focusPolicy: Qt.NoFocus
            ringed: ListView.isCurrentItem && row.activeFocus
            small: true
            text: chip.record
            y: 3

            onClicked: suggestions.chosen(chip.record)
        }
        model: ListAdaptor {
            records: suggestions.words
        }
    }
}
