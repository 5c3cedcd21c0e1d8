// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// Text as it stands, whatever it holds: much of what the screens show comes from strangers.
Text {
    property bool heading: false

    color: Theme.primary
    elide: Text.ElideRight
    font.pixelSize: Theme.body
    maximumLineCount: wrapMode === Text.NoWrap ? 1 : 10000 // a stranger's line breaks are none here
    textFormat: Text.PlainText

    Accessible.name: text
    Accessible.role: heading ? Accessible.Heading : Accessible.StaticText
}
