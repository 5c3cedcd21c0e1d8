// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// The pointer over the film. A click plays or pauses; of a double click, which leaves that as it
// was, the first half waits a moment, so that the film does not stutter.
Item {
    id: pointer

    property bool cursorHidden: false

    signal toggled()
    signal doubleClicked()

    // Not a HoverHandler, which changes the cursor at the next movement only.
    MouseArea {
        acceptedButtons: Qt.NoButton
        anchors.fill: parent
        cursorShape: pointer.cursorHidden ? Qt.BlankCursor : Qt.ArrowCursor
    }
    TapHandler {
        acceptedButtons: Qt.LeftButton

        onTapped: (event, button) => {
            if (tapCount === 1) {
                single.restart();
            } else if (tapCount === 2) {
                if (single.running)
                    single.stop();
                else
                    pointer.toggled();
                pointer.doubleClicked();
            }
        }
    }
    Timer {
        id: single

        interval: 200

        onTriggered: pointer.toggled()
    }
}
