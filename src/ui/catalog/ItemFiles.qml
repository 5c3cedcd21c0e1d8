// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// What there is to say and to choose about the files of an item.
QtObject {
    required property var details // an ArchiveDetails, null until loaded

    readonly property bool loaded: !!details
    readonly property bool restricted: loaded && details.restricted
    readonly property var playable: loaded ? details.playable : []
    readonly property var others: loaded ? details.otherVideos : []
    readonly property bool hasTorrent: loaded && details.torrentURL.toString() !== ""
    readonly property url torrent: loaded ? details.torrentURL : ""
    readonly property int subtitleCount: loaded ? details.subtitles.length : 0

    // For FileRow: every group of files after its heading.
    readonly property var rows: group(qsTr("Play"), playable, !restricted).concat(
        group(qsTr("Other video files (download only)"), restricted ? [] : others, false))

    readonly property string banner: {
        if (!loaded)
            return "";
        if (restricted)
            return qsTr("This item is access-restricted and can't be streamed.");
        if (playable.length > 0)
            return "";
        if (others.length === 0)
            return qsTr("No video files found in this item.");
        return qsTr("No Mac-compatible stream (MP4/M4V/MOV) is available. Other formats can be downloaded.");
    }

    function group(heading: string, files: var, canPlay: bool): var {
        const rows = [];
        for (const file of files)
            rows.push({ file: file, canPlay: canPlay, canDownload: !restricted });
        // The buttons say "Play" too, and can be pressed.
        return rows.length > 0 ? [{ heading: heading, silent: canPlay }].concat(rows) : [];
    }
}
