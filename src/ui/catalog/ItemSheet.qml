// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Sheet {
    id: sheet

    required property var app // an AppState

    readonly property var item: app.selectedItem

    height: 620
    padding: 0
    title: item?.title ?? ""
    visible: true
    width: 760

    onClosed: app.clearSelectedItem()

    contentItem: ItemDetailView {
        app: sheet.app
        focus: true
        item: sheet.item

        onDismissed: sheet.close()
    }
}
