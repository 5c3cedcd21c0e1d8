// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

ScrollPage {
    id: screen

    required property var app // an AppState

    property bool adding: false
    readonly property real columnWidth: Math.min(760, width - 2 * Theme.inset)

    focus: true

    Keys.forwardTo: [keys]
    Component.onCompleted: app.cache.refresh()
    onVisibleChanged: if (visible) app.cache.refresh()

    ScrollKeys {
        id: keys

        parent: screen
        view: screen
    }
    PageHeader {
        title: qsTr("Settings")
        width: screen.columnWidth
        x: Theme.inset
    }
    ProviderSection {
        app: screen.app
        width: screen.columnWidth
        x: Theme.inset

        onAddWanted: screen.adding = true
    }
    StorageSection {
        app: screen.app
        width: screen.columnWidth
        x: Theme.inset
    }
    FormSection {
        title: qsTr("Torrents & Seeding")
        width: screen.columnWidth
        x: Theme.inset

        FormCaption {
            color: Theme.primary
            pixelSize: Theme.callout
            ruled: false
            text: qsTr("This app has no built-in BitTorrent engine, so it never downloads, streams "
                       + "or uploads torrent data. Magnet links and .torrent files are handed to "
                       + "the BitTorrent app you choose; that app controls seeding.")
        }
    }
    FormSection {
        title: qsTr("About Sources")
        width: screen.columnWidth
        x: Theme.inset

        FormCaption {
            color: Theme.primary
            pixelSize: Theme.callout
            ruled: false
            text: qsTr("Orvella content is streamed directly from Orvella. Licensing is shown when "
                       + "the catalog provides it; don't assume an item is public domain.")
        }
    }
    Lazy {
        id: editor

        app: screen.app
        file: "manage/ProviderEditor.qml"
        height: 0
        wanted: screen.adding
    }
    Connections {
        function onClosed() {
            screen.adding = false;
        }

        ignoreUnknownSignals: true
        target: editor.item
    }
}
