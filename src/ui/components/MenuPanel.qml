// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// A menu above the button that opens it, as wide as its widest row; one that is too tall scrolls.
T.Menu {
    id: menu

    readonly property real widestRow: {
        let widest = 0;
        for (let i = 0; i < count; ++i)
            widest = Math.max(widest, itemAt(i)?.implicitWidth ?? 0);
        return widest;
    }

    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
    implicitHeight: contentHeight + topPadding + bottomPadding
    implicitWidth: Math.max(120, Math.min(420, widestRow)) + leftPadding + rightPadding
    margins: 8
    padding: 5
    x: parent ? parent.width - width : 0
    y: -height - 8

    onAboutToShow: currentIndex = -1

    background: Rectangle {
        border.color: Theme.hairline
        color: Theme.popup
        radius: Theme.radius
    }
    contentItem: ListView {
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        currentIndex: menu.currentIndex // its own would take the focus back to the first row
        implicitHeight: contentHeight
        interactive: contentHeight > height
        model: menu.contentModel

        T.ScrollBar.vertical: ScrollThumb {
        }
    }
}
