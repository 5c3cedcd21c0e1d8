// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

FocusScope {
    id: stack

    required property var app // an AppState

    Repeater {
        model: stack.app.sections

        SectionScreen {
            required property string modelData

            anchors.fill: parent
            app: stack.app
            section: modelData
        }
    }
}
