// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tavelo

T.Menu {
    id: menu

    required property var choices
    property var current

    signal chosen(var value)

    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
    implicitHeight: contentHeight + topPadding + bottomPadding
    implicitWidth: Math.max(120, contentWidth + leftPadding + rightPadding)
    margins: 8
    padding: 5

    onAboutToShow: currentIndex = -1

    Instantiator {
        model: menu.choices

        delegate: ChoiceRow {
            required property var modelData

            chosen: menu !== null && modelData.value === menu.current
            label: modelData.text

            onTriggered: menu.chosen(modelData.value)
        }

        onObjectAdded: (index, object) => menu.insertItem(index, object as T.MenuItem)
        onObjectRemoved: (index, object) => menu.removeItem(object as T.MenuItem)
    }

    background: Rectangle {
        border.color: Theme.hairline
        color: Theme.popup
        radius: Theme.radius
    }
    contentItem: ListView {
        implicitHeight: contentHeight
        implicitWidth: contentItem.childrenRect.width
        interactive: false
        model: menu.contentModel
    }
}
