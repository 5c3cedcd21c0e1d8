// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

// A text whose digits are all of one width: a running clock does not tremble.
Row {
    id: clock

    required property string text
    property color color: Theme.primary

    readonly property var runs: text.match(/\d|\D+/g) ?? []
    readonly property real digitWidth: Math.max(...Array.from("0123456789",
                                                              digit => widthOf(digit)))

    function widthOf(run: string): real {
        return Math.ceil(metrics.advanceWidth(run));
    }

    Accessible.name: text
    Accessible.role: Accessible.StaticText

    FontMetrics {
        id: metrics

        font.pixelSize: Theme.caption
    }
    Repeater {
        model: clock.runs.length

        Label {
            required property int index

            Accessible.ignored: true
            color: clock.color
            elide: Text.ElideNone
            font: metrics.font
            horizontalAlignment: Text.AlignHCenter
            text: clock.runs[index] ?? ""
            width: /\d/.test(text) ? clock.digitWidth : clock.widthOf(text)
        }
    }
}
