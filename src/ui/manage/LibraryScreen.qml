// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

ListPage {
    id: library

    required property var app // an AppState

    delegate: LibraryRow {
        column: library.column

        onPlay: film => {
            if (record.kind === "saved")
                library.app.playLocal(film);
            else
                library.app.resume(film);
        }
        onRemove: key => library.app.library.remove(key)
    }
    model: ListAdaptor {
        key: "id"
        records: LibraryRows.of(library.app.downloads.saved, library.app.library.history)
    }
    title: qsTr("Library")

    Component.onCompleted: app.downloads.refreshSaved()
    onVisibleChanged: if (visible) app.downloads.refreshSaved()

    PushButton {
        text: qsTr("Clear History")
        visible: library.app.library.history.length > 0

        onClicked: library.app.library.clear()
    }
}
