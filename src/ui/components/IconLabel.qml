// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A symbol and a text beside it, which wraps within `width`.
Row {
    id: row

    required property string symbol
    required property string text
    property color color: Theme.secondary
    property int pixelSize: Theme.callout

    spacing: 8

    Icon {
        anchors.top: label.top
        anchors.topMargin: Math.round((metrics.height - height) / 2)
        color: row.color
        name: row.symbol
        size: Math.round(row.pixelSize * 1.3)
    }
    Label {
        id: label

        color: row.color
        font.pixelSize: row.pixelSize
        text: row.text
        width: Math.min(implicitWidth, row.width - x)
        wrapMode: Text.Wrap
    }
    FontMetrics {
        id: metrics

        font: label.font
    }
}
