// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

// A titled row of cards that scrolls sideways. One stop for the Tab key; the arrow keys go along
// the row, Return takes a card.
FocusScope {
    id: shelf

    required property string title
    required property var records
    required property Component delegate // a card with `record` and `index`
    property string key: "id"

    readonly property alias list: list

    signal activated(var record)

    function choose(index: int, record: var) {
        list.currentIndex = index;
        activated(record);
    }

    implicitHeight: list.y + list.height

    Label {
        id: heading

        font.bold: true
        font.pixelSize: Theme.title3
        heading: true
        height: 24
        text: shelf.title
        verticalAlignment: Text.AlignVCenter
        width: parent.width - 2 * Theme.inset
        x: Theme.inset
    }
    HoverHandler {
        id: hover
    }
    ListAdaptor {
        id: adaptor

        key: shelf.key
        records: shelf.records
    }
    ListView {
        id: list

        function page(direction: int) {
            const step = Math.max(166, width - 2 * Theme.inset - 166);
            const last = originX + contentWidth - width + Theme.inset;
            slide.to = Math.max(originX - Theme.inset,
                                Math.min(last, contentX + direction * step));
            slide.restart();
        }

        Accessible.name: shelf.title
        Accessible.role: Accessible.List
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        cacheBuffer: 332
        delegate: shelf.delegate
        focus: true
        height: 276
        highlightMoveDuration: 150
        leftMargin: Theme.inset
        model: adaptor
        orientation: ListView.Horizontal
        preferredHighlightBegin: Theme.inset
        preferredHighlightEnd: width - Theme.inset
        rightMargin: Theme.inset
        spacing: 16
        width: parent.width
        y: 34

        Keys.onEnterPressed: currentItem?.clicked()
        Keys.onReturnPressed: currentItem?.clicked()
        Keys.onSpacePressed: currentItem?.clicked()

        NumberAnimation {
            id: slide

            duration: 200
            easing.type: Easing.OutCubic
            property: "contentX"
            target: list
        }
        SidewaysWheel {
            row: list
        }
    }
    ShelfArrow {
        anchors.left: parent.left
        forward: false
        shown: hover.hovered && !list.atXBeginning

        onClicked: list.page(-1)
    }
    ShelfArrow {
        anchors.right: parent.right
        forward: true
        shown: hover.hovered && !list.atXEnd

        onClicked: list.page(1)
    }
}
