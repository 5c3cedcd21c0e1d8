// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

ScrollPage {
    id: home

    required property var app // an AppState

    readonly property var stops: [continueWatching, suggestions, featured, popular, viewed, saved]
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

    // The program begins to load before there is a window.
    function load() {
        if (!app.homeLoading)
            app.loadHome();
    }

    focus: true

    Component.onCompleted: load()
    Keys.onDownPressed: home.move(1)
    Keys.onUpPressed: home.move(-1)
    onVisibleChanged: if (visible)
        load()

    PageHeader {
        title: qsTr("Home")
        width: parent.width - 2 * Theme.inset
        x: Theme.inset
    }
    HistoryShelf {
        id: continueWatching

        app: home.app
        records: home.app.library.continueWatching.slice(0, 20)
        telling: true
        title: qsTr("Continue Watching")
        width: parent.width
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
    FilmShelf {
        id: featured

        app: home.app
        records: home.app.featured
        title: qsTr("Featured Public-Domain Films")
        width: parent.width
    }
    FilmShelf {
        id: popular

        app: home.app
        records: home.app.popular
        title: qsTr("Popular on Orvella This Week")
        width: parent.width
    }
    HistoryShelf {
        id: viewed

        app: home.app
        records: home.app.recentlyViewed
        title: qsTr("Recently Viewed")
        width: parent.width
    }
    SavedShelf {
        id: saved

        app: home.app
        records: home.app.downloads.saved.slice(0, 15)
        title: qsTr("Recently Added Local Content")
        width: parent.width
    }
}
