// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tavelo

PopupButton {
    id: button

    required property var subtitles // a SubtitleManager

    symbol: "captions.bubble"
    text: qsTr("Subtitles")

    menu: MenuPanel {
        id: panel

        ChoiceRow {
            chosen: button.subtitles.selected === null
            label: qsTr("Off")

            onTriggered: button.subtitles.selectOff()
        }
        MenuDivider {
        }
        ChoiceRow {
            label: qsTr("Choose File…")

            onTriggered: chooser.open({})
        }
        MenuNote {
            ink: Theme.warning
            text: button.subtitles.error
        }
        Instantiator {
            model: button.subtitles.tracks

            delegate: ChoiceRow {
                required property var modelData

                chosen: button.subtitles.selected !== null && button.subtitles.isSelected(modelData)
                label: modelData.name

                onTriggered: button.subtitles.selectTrack(modelData)
            }

            onObjectAdded: (index, object) => panel.insertItem(1 + index, object as T.MenuItem)
            onObjectRemoved: (index, object) => panel.removeItem(object as T.MenuItem)
        }
    }

    Chooser {
        id: chooser

        dialog: "FileChooser"
        options: ({ extensions: ["srt", "vtt"] })

        onChosen: file => button.subtitles.addLocal(file)
    }
}
