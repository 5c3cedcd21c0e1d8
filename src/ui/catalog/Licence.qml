// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Item {
    id: licence

    required property var app // an AppState
    required property string text // as the catalogue has it
    required property url link // empty: none that could be followed

    readonly property bool stated: `${link}` !== ""

    implicitHeight: stated ? row.height : note.height

    Row {
        id: row

        spacing: 6
        visible: licence.stated
        width: parent.width

        Icon {
            color: Theme.secondary
            name: "checkmark.seal"
            size: 16
        }
        Label {
            color: Theme.secondary
            font.pixelSize: Theme.caption
            text: qsTr("License:")
        }
        Link {
            app: licence.app
            destination: licence.link
            pixelSize: Theme.caption
            text: licence.text
            width: Math.min(implicitWidth, parent.width - x)
        }
    }
    IconLabel {
        id: note

        color: Theme.warning
        pixelSize: Theme.caption
        symbol: "info.circle"
        text: qsTr("No license information provided by the catalog. Don't assume this item is public domain.")
        visible: !licence.stated
        width: parent.width
    }
}
