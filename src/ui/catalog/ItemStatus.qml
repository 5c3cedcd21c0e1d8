// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// How far an item's files have come, and what is the matter with them.
Column {
    id: status

    required property ItemFiles files
    required property string error // empty: none

    visible: loading.visible || failure.visible || banner.visible

    LoadingLabel {
        id: loading

        text: qsTr("Inspecting files…")
        visible: !status.files.loaded && status.error === ""
    }
    IconLabel {
        id: failure

        symbol: "wifi.exclamationmark"
        text: qsTr("Couldn't load item files: ") + status.error
        visible: !status.files.loaded && status.error !== ""
        width: parent.width
    }
    IconLabel {
        id: banner

        color: status.files.restricted ? Theme.secondary : Theme.warning
        symbol: status.files.restricted ? "lock" : "exclamationmark.triangle"
        text: status.files.banner
        visible: text !== ""
        width: parent.width
    }
}
