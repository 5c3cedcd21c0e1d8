// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

ScrollPage {
    id: home

    required property var app // an AppState

    readonly property var stops: [suggestions, featured, popular]
    readonly property bool empty: app.featured.length === 0 && app.popular.length === 0

    // Up and down go from row to row.
    function move(step: int) {
        const shown = stops.filter(stop => stop.visible);
        const next = shown.findIndex(stop => stop.activeFocus) + step;
        if (next >= 0 && next < shown.length)
            shown[next].forceActiveFocus(Qt.TabFocusReason);
        else
            contentY = step < 0 ? 0 : Math.max(0, contentHeight - height);
    }

    focus: true

    Component.onCompleted: app.loadHome()
    Keys.onDownPressed: home.move(1)
    Keys.onUpPressed: home.move(-1)

    Component {
        id: filmCard

        PosterCard {
            id: card

            required property int index
            required property var record

            ringed: ListView.isCurrentItem && ListView.view.activeFocus
            subtitle: record.year ?? ""
            title: record.title
            url: record.thumbnailURL

            onClicked: {
                ListView.view.currentIndex = card.index;
                home.app.selectItem(record);
            }
        }
    }

    PageHeader {
        title: qsTr("Home")
        width: parent.width - 2 * Theme.inset
        x: Theme.inset
    }
    Suggestions {
        id: suggestions

        visible: words.length > 0
        width: parent.width
        words: home.app.suggestions

        onChosen: word => home.app.searchFor(word)
    }
    LoadingLabel {
        text: qsTr("Loading catalog…")
        visible: home.app.homeLoading && home.app.featured.length === 0
        x: Theme.inset
    }
    HomeError {
        message: home.app.homeError
        visible: home.app.homeError !== "" && home.empty
        width: parent.width - 2 * Theme.inset
        x: Theme.inset

        onRetry: home.app.loadHome()
    }
    Shelf {
        id: featured

        delegate: filmCard
        records: home.app.featured
        title: qsTr("Featured Public-Domain Films")
        visible: home.app.featured.length > 0
        width: parent.width
    }
    Shelf {
        id: popular

        delegate: filmCard
        records: home.app.popular
        title: qsTr("Popular on Orvella This Week")
        visible: home.app.popular.length > 0
        width: parent.width
    }
}
