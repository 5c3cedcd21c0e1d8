// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Sheet {
    id: sheet

    required property var app // an AppState

    padding: Theme.inset
    title: (contentItem as TorrentInspector)?.title ?? ""
    visible: true
    width: 640

    onClosed: app.clearInspector()

    contentItem: TorrentInspector {
        app: sheet.app
        focus: true

        onDismissed: sheet.close()
    }
}
