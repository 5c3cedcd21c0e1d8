// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A folder of the settings, and the way to another.
FormRow {
    id: row

    required property string title
    required property string path

    signal chosen(url folder)

    Label {
        anchors.left: parent.left
        anchors.right: path.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        text: row.title
    }
    Label {
        id: path

        anchors.right: button.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondary
        elide: Text.ElideLeft
        font.pixelSize: Theme.caption
        text: row.path
        width: Math.min(280, implicitWidth)

        HoverHandler {
            id: hover
        }
        HoverTip {
            text: row.path
            wanted: hover.hovered && path.truncated
        }
    }
    PushButton {
        id: button

        Accessible.description: row.title
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: qsTr("Choose…")

        onClicked: chooser.open({ currentFolder: Format.fileAddress(row.path) })
    }
    Chooser {
        id: chooser

        dialog: "FolderChooser"
        options: ({ title: row.title })

        onChosen: folder => row.chosen(folder)
    }
}
