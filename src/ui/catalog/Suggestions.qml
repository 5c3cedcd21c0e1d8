// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// Subject words, each of which starts a search.
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
    ChipRow {
        id: row

        anchors.top: caption.bottom
        anchors.topMargin: 6
        focus: true
        labels: suggestions.words
        title: caption.text
        width: parent.width

        onPicked: index => suggestions.chosen(suggestions.words[index])
    }
}
