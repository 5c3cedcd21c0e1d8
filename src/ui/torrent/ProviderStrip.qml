// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

// How far each provider is. Scrolls sideways where there is no room for all of them.
Flickable {
    id: strip

    required property var chips // ProviderChips
    required property bool unprovided

    readonly property bool overfull: contentWidth > width

    function scroll(by: real) {
        contentX = Math.max(0, Math.min(contentWidth - width, contentX + by));
    }

    activeFocusOnTab: overfull
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    contentWidth: row.width
    flickableDirection: Flickable.HorizontalFlick
    implicitHeight: Math.max(22, row.implicitHeight)

    Accessible.name: qsTr("Providers")
    Accessible.role: Accessible.List
    Keys.onLeftPressed: scroll(-60)
    Keys.onRightPressed: scroll(60)

    WheelHandler {
        enabled: strip.overfull

        onWheel: event => strip.flick((event.angleDelta.x || event.angleDelta.y) * 8, 0)
    }
    FocusRing {
        around: 0
        parent: strip
        shown: strip.activeFocus
    }
    Row {
        id: row

        height: strip.height
        spacing: Theme.grid

        Label {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.warning
            font.pixelSize: Theme.caption
            text: qsTr("No providers enabled — enable some in Settings.")
            visible: strip.unprovided
        }
        Repeater {
            model: ListAdaptor {
                key: "id"
                records: strip.chips
            }

            StatusChip {
                required property var record

                chip: record
            }
        }
    }
}
