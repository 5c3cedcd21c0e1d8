// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// Films as posters or as a list, by the user's setting. Only those near the view are made. One stop
// for the Tab key.
FocusScope {
    id: grid

    required property var app // an AppState
    required property var items // MediaItems
    required property string title
    property int headHeight: 0 // room above the first row, which scrolls with it
    property bool keyed: false // the keyboard's place shows

    readonly property var view: loader.item
    readonly property bool asCards: app.settings.gridView
    readonly property bool driven: view?.driven ?? false // by wheel, drag or scroll bar
    readonly property int scrolled: view ? Math.round(view.contentY - view.originY) + headHeight : 0

    function toTop() {
        view?.cancelFlick();
        if (view)
            view.contentY = view.originY - headHeight;
    }
    function toStart() {
        if (view)
            view.currentIndex = 0;
        toTop();
    }
    function go(index: int) {
        keyed = true;
        view.currentIndex = index;
        if (index < view.columns)
            toTop();
    }
    // Where a key leads to; -1: nowhere.
    function target(key: int): int {
        const current = view.currentIndex;
        const last = view.count - 1;
        const columns = view.columns;
        const page = columns * Math.max(1, Math.floor(height / view.rowHeight));
        switch (key) {
        case Qt.Key_Left:
            return columns > 1 ? current - 1 : -1;
        case Qt.Key_Right:
            return columns > 1 ? Math.min(last, current + 1) : -1;
        case Qt.Key_Up:
            return current - columns;
        case Qt.Key_Down:
            return Math.min(last, current + columns);
        case Qt.Key_PageUp:
            return Math.max(current % columns, current - page);
        case Qt.Key_PageDown:
            return Math.min(last, current + page);
        case Qt.Key_Home:
            return 0;
        case Qt.Key_End:
            return last;
        }
        return -1;
    }
    function take() {
        forceActiveFocus(Qt.MouseFocusReason);
        keyed = false;
    }
    function open(index: int) {
        view.currentIndex = index;
        take();
        app.selectItem(items[index]);
    }
    // The other form, at the same place.
    function makeView() {
        const current = view?.currentIndex ?? 0;
        const past = view ? scrolled - headHeight : 0;
        const first = past > 0 ? view.columns * Math.round(past / view.rowHeight) : -1;
        loader.setSource(asCards ? "MediaCards.qml" : "MediaRows.qml",
                         { currentIndex: current, grid: grid, model: adaptor });
        view.forceLayout();
        if (first >= 0)
            view.positionViewAtIndex(first, ListView.Beginning);
        else
            toTop();
    }

    Component.onCompleted: makeView()
    Keys.onEnterPressed: open(view.currentIndex)
    Keys.onPressed: event => {
        const index = target(event.key);
        event.accepted = index >= 0;
        if (index >= 0)
            go(index);
    }
    Keys.onReturnPressed: open(view.currentIndex)
    Keys.onSpacePressed: open(view.currentIndex)
    onActiveFocusChanged: keyed = activeFocus
    onHeadHeightChanged: toTop()
    onAsCardsChanged: if (view) makeView()

    ListAdaptor {
        id: adaptor

        key: "id"
        records: grid.items
    }
    Loader {
        id: loader

        anchors.fill: parent
        focus: true
    }
}
