// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick

// The table's columns. Those of a fixed width can be made wider or narrower; the title has what they
// leave, and where that would be too little all of them shrink.
QtObject {
    id: columns

    required property real available

    property var wanted: [80, 56, 56, 60, 46, 110] // size, seeds, peers, quality, …
    readonly property int gap: 8
    readonly property int padding: 10
    readonly property int menu: 34
    readonly property int leastTitle: 140
    readonly property int least: 36
    readonly property real room: available - 2 * padding - 7 * gap - menu
    readonly property real sum: wanted.reduce((total, width) => total + width, 0)
    readonly property var widths: {
        const share = Math.min(1, (room - leastTitle) / sum);
        return wanted.map(width => Math.floor(width * share));
    }
    readonly property real title: room - widths.reduce((total, width) => total + width, 0)

    // Moves a column's left edge; the title gives or takes.
    function resize(column: int, width: real) {
        const most = widths[column] + title - leastTitle;
        const changed = Array.from(widths);
        changed[column] = Math.round(Math.max(least, Math.min(most, width)));
        wanted = changed;
    }
}
