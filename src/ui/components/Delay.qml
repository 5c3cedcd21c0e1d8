// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick

// `over` when something has waited for `interval`, until it no longer does.
Timer {
    property bool over: false
    property bool waiting: false

    running: waiting

    onTriggered: over = true
    onWaitingChanged: if (!waiting) over = false
}
