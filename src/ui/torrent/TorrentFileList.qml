// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tavelo

// Makes only the rows in view: a torrent may hold tens of thousands of files.
Rectangle {
    id: plate

    required property TorrentInspectorModel files

    color: Theme.panel
    implicitHeight: Math.max(160, Math.min(260, 28 * files.count + 8))
    radius: Theme.radius

    ListView {
        id: list

        Accessible.name: qsTr("Files")
        Accessible.role: Accessible.List
        activeFocusOnTab: true
        anchors.fill: parent
        anchors.margins: 4
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        keyNavigationEnabled: false
        model: plate.files
        reuseItems: true

        T.ScrollBar.vertical: ScrollThumb {
        }

        Keys.forwardTo: [keys]

        delegate: TorrentFileRow {
            width: ListView.view.width
        }
    }
    ScrollKeys {
        id: keys

        line: 28
        view: list
    }
    FocusRing {
        shown: list.activeFocus
    }
}
