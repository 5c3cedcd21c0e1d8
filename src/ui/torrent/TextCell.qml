// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Label {
    Accessible.ignored: true
    anchors.verticalCenter: parent?.verticalCenter
    font.pixelSize: Theme.callout
}
