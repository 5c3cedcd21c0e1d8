// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tavelo

PopupButton {
    id: button

    required property var subtitles // a SubtitleManager

    function chooseFile() {
        if (chooser.status === Loader.Null)
            chooser.setSource("qrc:/qt/qml/Tavelo/components/FileChooser.qml",
                              { extensions: ["srt", "vtt"] });
        (chooser.item as FileChooser).open();
    }

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

            onTriggered: button.chooseFile()
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

    // The dialog's own library is read in when it is first asked for.
    Loader {
        id: chooser
    }
    Connections {
        function onChosen(file) {
            button.subtitles.addLocal(file);
        }

        ignoreUnknownSignals: true
        target: chooser.item
    }
}
