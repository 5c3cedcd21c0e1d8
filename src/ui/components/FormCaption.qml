// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A row of a FormSection that only says something.
FormRow {
    id: row

    required property string text
    property color color: Theme.secondary
    property int pixelSize: Theme.caption

    implicitHeight: label.height + 24

    Label {
        id: label

        color: row.color
        font.pixelSize: row.pixelSize
        lineHeight: 1.15
        text: row.text
        width: parent.width
        wrapMode: Text.Wrap
        y: 2
    }
}
