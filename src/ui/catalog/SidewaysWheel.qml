// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick

// Scrolls a row by an upright wheel with Shift; a sideways one it follows by itself.
WheelHandler {
    required property Flickable row

    acceptedModifiers: Qt.ShiftModifier
    orientation: Qt.Vertical

    onWheel: event => row.flick(event.angleDelta.y * 8, 0)
}
