// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// The screen of one section: made when it is first shown, and kept, but for those that begin anew
// each time.
Lazy {
    id: screen

    required property string section

    readonly property bool current: app.section === section
    readonly property var files: ({
        "Home": "catalog/HomeScreen.qml",
        "Discover": "catalog/DiscoverScreen.qml",
        "Search": "catalog/SearchScreen.qml",
        "Torrent Search": "torrent/TorrentSearchScreen.qml",
        "Library": "manage/LibraryScreen.qml",
        "Downloads": "manage/DownloadsScreen.qml",
        "Settings": "manage/SettingsScreen.qml"
    })
    readonly property bool beginsAnew: section === "Torrent Search"

    file: files[section]
    focus: current
    visible: current

    Component.onCompleted: if (current) wanted = true
    onCurrentChanged: wanted = current || (wanted && !beginsAnew)
}
