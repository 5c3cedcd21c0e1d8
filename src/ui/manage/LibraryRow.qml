// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tavelo

// One of LibraryRows: a heading, a note, or a film.
ListRow {
    id: row

    required property var record

    readonly property bool isHeading: record.kind === "heading"
    readonly property bool isFilm: record.kind === "saved" || record.kind === "entry"
    readonly property bool isEntry: record.kind === "entry"

    signal play(var film)
    signal remove(string key)

    bare: !isFilm
    buttons: isEntry ? [action, cross] : isFilm ? [action] : []
    implicitHeight: isFilm ? 56 : isHeading ? 44 : 28
    remover: isEntry ? cross : null

    Accessible.name: record.title

    Label {
        anchors.bottom: parent.bottom
        anchors.bottomMargin: row.isHeading ? 6 : 4
        color: row.isHeading ? Theme.primary : Theme.secondary
        font.bold: row.isHeading
        font.pixelSize: row.isHeading ? Theme.title3 : Theme.body
        heading: row.isHeading
        text: row.isFilm ? "" : row.record.title
        visible: !row.isFilm
        width: parent.width
    }
    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 16
        anchors.rightMargin: 10
        spacing: 12
        visible: row.isFilm

        Icon {
            color: Theme.secondary
            name: "film"
            visible: row.record.kind === "saved"
        }
        Column {
            Layout.fillWidth: true
            spacing: 3

            Label {
                text: row.isFilm ? row.record.title : ""
                width: parent.width
            }
            Label {
                color: Theme.secondary
                font.pixelSize: Theme.caption
                text: row.record.time ?? ""
                visible: text !== ""
                width: parent.width
            }
        }
        Label {
            color: Theme.secondary
            font.pixelSize: row.isEntry ? Theme.caption : Theme.callout
            text: row.record.size ?? row.record.date ?? ""
        }
        PushButton {
            id: action

            Accessible.name: text + " " + (row.record.title ?? "")
            Layout.minimumWidth: row.isEntry ? 76 : 0
            activeFocusOnTab: false
            borderless: row.isEntry
            focusPolicy: Qt.NoFocus
            ringed: row.ringed === action
            symbol: row.isEntry ? "" : "play.fill"
            text: row.record.action ?? ""

            onClicked: row.play(row.record.film)
        }
        IconButton {
            id: cross

            activeFocusOnTab: false
            color: Theme.secondary
            focusPolicy: Qt.NoFocus
            iconSize: 16
            ringed: row.ringed === cross
            symbol: "xmark"
            text: qsTr("Remove %1 from history").arg(row.record.title)
            visible: row.isEntry

            onClicked: row.remove(row.record.film.key)
        }
    }
}
