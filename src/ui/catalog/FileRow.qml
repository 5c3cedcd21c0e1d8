// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// One of the rows of ItemFiles: a heading or a file.
ListRow {
    id: row

    required property var record

    readonly property bool isHeading: !!record.heading
    readonly property string name: record.file?.name ?? ""

    signal download(var file)
    signal play(var file)

    bare: isHeading
    buttons: record.canPlay ? [playButton, saveButton] : record.canDownload ? [saveButton] : []
    implicitHeight: isHeading ? 40 : 56

    Accessible.ignored: isHeading
    Accessible.name: name

    Label {
        Accessible.ignored: !row.isHeading || row.record.silent
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 6
        font.pixelSize: Theme.headline
        font.weight: Font.DemiBold
        heading: true
        text: row.record.heading ?? ""
        visible: row.isHeading
        width: parent.width
    }
    Column {
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: controls.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3
        visible: !row.isHeading

        Label {
            elide: Text.ElideMiddle
            text: row.name
            width: parent.width
        }
        Label {
            color: Theme.secondary
            font.pixelSize: Theme.caption
            text: row.isHeading ? "" : row.record.file.format + " · " + row.record.file.sizeText
            width: parent.width
        }
    }
    Row {
        id: controls

        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.grid

        PushButton {
            id: playButton

            Accessible.description: row.name
            activeFocusOnTab: false
            focusPolicy: Qt.NoFocus
            prominent: true
            ringed: row.ringed === playButton
            symbol: "play.fill"
            text: qsTr("Play")
            visible: row.record.canPlay ?? false

            onClicked: row.play(row.record.file)
        }
        IconButton {
            id: saveButton

            Accessible.description: row.name
            activeFocusOnTab: false
            focusPolicy: Qt.NoFocus
            ringed: row.ringed === saveButton
            symbol: "arrow.down.circle"
            text: qsTr("Save to Downloads")
            visible: row.record.canDownload ?? false

            onClicked: row.download(row.record.file)
        }
    }
}
