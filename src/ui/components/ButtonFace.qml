// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// What a button shows: a symbol, a text, or both side by side, in its middle.
Item {
    id: face

    property string symbol: ""
    property int symbolSize: 14
    property string text: ""
    property color ink: Theme.primary
    property int pixelSize: Theme.callout
    property int weight: Font.Medium

    implicitHeight: row.implicitHeight
    implicitWidth: row.implicitWidth

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 6

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            color: face.ink
            name: face.symbol
            size: face.symbolSize
            visible: face.symbol !== ""
        }
        Label {
            Accessible.ignored: true
            anchors.verticalCenter: parent.verticalCenter
            color: face.ink
            font.pixelSize: face.pixelSize
            font.weight: face.weight
            text: face.text
            visible: face.text !== ""
        }
    }
}
