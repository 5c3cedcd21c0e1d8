// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// The screen of one section: made when it is first shown, and kept.
Lazy {
    id: screen

    required property string section

    readonly property bool current: app.section === section
    readonly property var files: ({
        "Home": "catalog/HomeScreen.qml"
    })

    file: files[section] ?? "components/PlaceholderScreen.qml"
    focus: current
    visible: current

    Component.onCompleted: if (current) wanted = true
    onCurrentChanged: if (current) wanted = true
    onLoaded: if (item instanceof PlaceholderScreen) item.title = section
}
