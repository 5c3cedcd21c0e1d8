// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tavelo

RowLayout {
    id: filters

    required property TorrentResultModel results

    function named(names: var): var {
        return names.map(name => ({ text: name, value: name }));
    }

    function limits(sizes: var): var {
        return sizes.map(size => ({
            text: size === 0 ? qsTr("Any") : qsTr("≤ %1 GB").arg(size),
            value: size
        }));
    }

    spacing: Theme.grid

    Picker {
        Layout.preferredWidth: 160
        choices: filters.named(["Any", "2160p", "1080p", "720p", "480p", "SD"])
        current: filters.results.resolution
        text: qsTr("Resolution")

        onChosen: value => filters.results.resolution = value
    }
    Picker {
        Layout.preferredWidth: 140
        choices: filters.named(["Any", "mkv", "mp4", "avi", "m4v", "mov", "webm"])
        current: filters.results.format
        text: qsTr("Format")

        onChosen: value => filters.results.format = value
    }
    Picker {
        Layout.preferredWidth: 150
        choices: filters.limits([0, 1, 2, 5, 10, 20])
        current: filters.results.maxSizeGB
        text: qsTr("Max size")

        onChosen: value => filters.results.maxSizeGB = value
    }
    SourcePicker {
        Layout.preferredWidth: 100
        results: filters.results
    }
    Label {
        Layout.fillWidth: true
        color: Theme.secondary
        font.pixelSize: Theme.caption
        horizontalAlignment: Text.AlignRight
        text: filters.results.countText
    }
}
