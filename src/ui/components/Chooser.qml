// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick

// A dialog that asks for a file or a folder. Its library is read in when it is first opened.
Loader {
    id: chooser

    required property string dialog // "FileChooser" or "FolderChooser"
    property var options: ({}) // of the dialog

    signal chosen(url address)

    function open(changes: var) {
        if (status === Loader.Null)
            setSource("qrc:/qt/qml/Tavelo/components/" + dialog + ".qml", options);
        Object.assign(item, changes, { visible: true });
    }

    Connections {
        function onChosen(address) {
            chooser.chosen(address);
        }

        ignoreUnknownSignals: true
        target: chooser.item
    }
}
