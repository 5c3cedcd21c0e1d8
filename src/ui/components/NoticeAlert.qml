// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Sheet {
    id: alert

    required property var app // an AppState

    padding: Theme.inset
    title: qsTr("Notice")
    visible: true
    width: 360

    onClosed: app.clearNotice()

    contentItem: NoticeBody {
        focus: true
        message: alert.app.notice
        title: alert.title

        Component.onCompleted: takeFocus()
        onDismissed: alert.close()
    }
}
