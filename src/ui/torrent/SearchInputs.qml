// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tavelo

// What a search starts from: words, a magnet link, or a file.
FocusScope {
    id: inputs

    required property var app // an AppState

    readonly property string query: words.text

    signal searched()

    function inspect() {
        const text = magnet.text;
        magnet.clear();
        app.inspectMagnet(text);
    }

    implicitHeight: row.implicitHeight

    RowLayout {
        id: row

        spacing: Theme.grid
        width: parent.width

        TextEntry {
            id: words

            Layout.fillWidth: true
            focus: true
            placeholderText: qsTr("Search title or keywords across enabled providers…")
            symbol: "magnifyingglass"

            onAccepted: inputs.searched()
        }
        PushButton {
            prominent: true
            text: qsTr("Search")

            onClicked: inputs.searched()
        }
        Rectangle {
            Layout.leftMargin: 4
            Layout.preferredHeight: 18
            Layout.preferredWidth: 1
            Layout.rightMargin: 4
            color: Qt.rgba(1, 1, 1, 0.2)
        }
        TextEntry {
            id: magnet

            Layout.preferredWidth: 190
            placeholderText: qsTr("Paste magnet link")

            onAccepted: inputs.inspect()
        }
        PushButton {
            enabled: magnet.text !== ""
            text: qsTr("Inspect")

            onClicked: inputs.inspect()
        }
        PushButton {
            text: qsTr("Open .torrent…")

            onClicked: chooser.open({})
        }
    }
    Chooser {
        id: chooser

        dialog: "FileChooser"
        options: ({ extensions: ["torrent"] })

        onChosen: file => inputs.app.inspectTorrentFile(file)
    }
}
