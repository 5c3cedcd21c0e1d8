// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// One row of a FormSection: as high as its tallest control, with a line above where it is not first.
Item {
    id: row

    property bool ruled: true
    default property alias content: holder.data

    function tallest(items: var): real {
        let height = 32;
        for (let index = 0; index < items.length; ++index)
            height = Math.max(height, items[index].implicitHeight);
        return height;
    }

    height: implicitHeight
    implicitHeight: tallest(holder.children) + 20
    width: parent?.width ?? 0

    Rectangle {
        color: Theme.hairline
        height: 1
        visible: row.ruled
        width: parent.width - 2 * x
        x: 16
    }
    Item {
        id: holder

        height: row.height - 20
        width: parent.width - 2 * x
        x: 16
        y: 10
    }
}
