// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Label {
    required property real seconds

    elide: Text.ElideNone
    font.pixelSize: Theme.caption
    text: Format.time(seconds)
}
