// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// The files of an item: what can be played, what could be downloaded, and what is the matter.
Column {
    id: files

    required property var details // an ArchiveDetails, null until loaded
    required property string error

    readonly property bool loaded: !!details
    readonly property bool restricted: loaded && details.restricted
    readonly property var playable: loaded ? details.playable : []
    readonly property var others: loaded && !restricted ? details.otherVideos : []
    readonly property string torrent: loaded ? details.torrentURL : ""
    readonly property int subtitleCount: loaded ? details.subtitles.length : 0

    signal download(var file)
    signal inspect(url torrent)
    signal play(var file)

    function banner(): string {
        if (!loaded)
            return "";
        if (restricted)
            return qsTr("This item is access-restricted and can't be streamed.");
        if (playable.length > 0)
            return "";
        if (details.otherVideos.length === 0)
            return qsTr("No video files found in this item.");
        return qsTr("No Mac-compatible stream (MP4/M4V/MOV) is available. Other formats can be downloaded.");
    }

    // Plays the first file, when it has one that can be played.
    function playFirst() {
        if (!restricted && playable.length > 0)
            play(playable[0]);
    }

    spacing: 12

    LoadingLabel {
        text: qsTr("Inspecting files…")
        visible: !files.loaded && files.error === ""
    }
    IconLabel {
        symbol: "wifi.exclamationmark"
        text: qsTr("Couldn't load item files: ") + files.error
        visible: !files.loaded && files.error !== ""
        width: parent.width
    }
    IconLabel {
        color: files.restricted ? Theme.secondary : Theme.warning
        symbol: files.restricted ? "lock" : "exclamationmark.triangle"
        text: files.banner()
        visible: text !== ""
        width: parent.width
    }
    FileList {
        canDownload: !files.restricted
        canPlay: !files.restricted
        files: files.playable
        title: qsTr("Play")
        visible: files.playable.length > 0
        width: parent.width

        onDownload: file => files.download(file)
        onPlay: file => files.play(file)
    }
    FileList {
        canDownload: true
        files: files.others
        title: qsTr("Other video files (download only)")
        visible: files.others.length > 0
        width: parent.width

        onDownload: file => files.download(file)
    }
    IconLabel {
        symbol: "captions.bubble"
        text: files.subtitleCount + qsTr(" subtitle file(s) will be available in the player.")
        visible: files.subtitleCount > 0
        width: parent.width
    }
    PushButton {
        text: qsTr("Inspect Orvella .torrent")
        visible: files.torrent !== ""

        onClicked: files.inspect(files.torrent)
    }
}
