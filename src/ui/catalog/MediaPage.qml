// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A title, the rows of controls below it, and films, which they scroll with; or, in the middle of
// the room below them, what there is to say instead.
FocusScope {
    id: page

    required property var app // an AppState
    property string title
    property var items: []
    property string message
    property bool busy: false
    property bool failed: false
    default property alias rows: column.data

    readonly property bool filled: !busy && !failed && items.length > 0

    clip: true
    focus: true

    Keys.onUpPressed: head.forceActiveFocus(Qt.BacktabFocusReason)
    onBusyChanged: if (busy) grid.toStart()
    onFilledChanged: if (!filled && grid.activeFocus) head.forceActiveFocus(Qt.OtherFocusReason)

    FocusScope {
        id: head

        focus: true
        height: column.height + Theme.inset
        width: parent.width
        y: page.filled ? -grid.scrolled : 0
        z: 1

        Keys.onDownPressed: if (page.filled) grid.forceActiveFocus(Qt.TabFocusReason)
        onActiveFocusChanged: if (activeFocus) grid.toTop()

        Column {
            id: column

            spacing: 16
            topPadding: Theme.inset
            width: parent.width

            PageHeader {
                title: page.title
                width: parent.width - 2 * Theme.inset
                x: Theme.inset

                ViewModeToggle {
                    app: page.app
                }
            }
        }
    }
    MediaGrid {
        id: grid

        anchors.fill: parent
        app: page.app
        headHeight: head.height
        items: page.items
        title: page.title
        visible: page.filled

        // Keys must not go to what has been scrolled out of sight.
        onDrivenChanged: if (grid.driven && head.activeFocus) grid.take()
    }
    Item {
        anchors.bottom: parent.bottom
        anchors.top: head.bottom
        visible: !page.filled
        width: parent.width

        Spinner {
            anchors.centerIn: parent
            size: 28
            visible: page.busy
        }
        Label {
            anchors.centerIn: parent
            color: Theme.secondary
            horizontalAlignment: Text.AlignHCenter
            text: page.message
            visible: !page.busy
            width: Math.min(implicitWidth, parent.width - 2 * Theme.inset)
            wrapMode: Text.Wrap
        }
    }
}
