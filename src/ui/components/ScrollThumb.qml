// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// A thin bar that shows while its view moves or the pointer is on it.
T.ScrollBar {
    id: bar

    implicitHeight: 10
    implicitWidth: 10
    minimumSize: 0.06
    padding: 2
    visible: size < 1

    contentItem: Rectangle {
        color: bar.pressed ? Qt.rgba(1, 1, 1, 0.5) : Qt.rgba(1, 1, 1, 0.28)
        implicitHeight: 6
        implicitWidth: 6
        opacity: bar.active || bar.hovered ? 1 : 0
        radius: 3

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.fade
            }
        }
    }
}
