// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// The catalogue by its collections.
MediaPage {
    id: discover

    readonly property var collections: app.collections

    function open(index: int) {
        app.loadCollection(collections[index]);
    }
    // Never empty on the first visit.
    function begin() {
        if (visible && !app.collection)
            open(0);
    }

    busy: app.discoverLoading
    items: app.discoverResults
    message: qsTr("Pick a collection to browse real Orvella catalog entries.")
    title: qsTr("Discover")

    Component.onCompleted: begin()
    onVisibleChanged: begin()

    ChipRow {
        chosen: discover.collections.findIndex(one => one.id === discover.app.collection?.id)
        focus: true
        labels: discover.collections.map(one => one.title)
        title: qsTr("Collections")
        width: parent.width

        onPicked: index => discover.open(index)
    }
}
