// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

T.ToolTip {
    id: tip

    closePolicy: T.Popup.NoAutoClose
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    leftPadding: 8
    rightPadding: 8
    bottomPadding: 5
    topPadding: 5
    margins: 6
    x: parent ? Math.round((parent.width - implicitWidth) / 2) : 0
    y: -implicitHeight - 6

    background: Rectangle {
        border.color: Theme.hairline
        color: Theme.popup
        radius: 6
    }
    contentItem: Label {
        Accessible.ignored: true
        font.pixelSize: Theme.caption
        text: tip.text
    }
}
