// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick

// A click beside the controls of what this stands in is none on the film below. Takes the press for
// itself, which a handler does not with the policy that it has by itself.
TapHandler {
    gesturePolicy: TapHandler.ReleaseWithinBounds
}
