// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// Digits of one width: they stand below one another.
TextCell {
    font.family: Fonts.digits
    font.pixelSize: Theme.caption
    horizontalAlignment: Text.AlignRight
}
