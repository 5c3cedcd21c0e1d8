// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

T.MenuSeparator {
    implicitHeight: 9
    width: ListView.view ? ListView.view.width : implicitWidth

    contentItem: Item {
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.hairline
            height: 1
            width: parent.width
        }
    }
}
