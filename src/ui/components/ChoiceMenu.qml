// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tavelo

MenuPanel {
    id: menu

    required property var choices // of { text, value }
    property var current
    property bool shown: false // once; its rows are made then

    signal chosen(var value)

    onAboutToShow: shown = true

    Instantiator {
        active: menu.shown
        model: menu.choices

        delegate: ChoiceRow {
            required property var modelData

            chosen: menu !== null && modelData.value === menu.current
            label: modelData.text
            marked: menu !== null && menu.current !== undefined

            onTriggered: menu.chosen(modelData.value)
        }

        onObjectAdded: (index, object) => menu.insertItem(index, object as T.MenuItem)
        onObjectRemoved: (index, object) => menu.removeItem(object as T.MenuItem)
    }
}
