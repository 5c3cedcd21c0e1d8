// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tavelo

// A menu of switches: one a source, on while its results are shown.
PickerButton {
    id: picker

    required property TorrentResultModel results

    readonly property var hidden: results.hiddenSources

    menu: switches
    text: qsTr("Sources")

    MenuPanel {
        id: switches

        x: 0
        y: picker.height + 4

        Instantiator {
            model: ListAdaptor {
                records: picker.results.sources
            }

            delegate: ChoiceRow {
                required property string record

                chosen: !picker.hidden.includes(record)
                label: record

                onTriggered: picker.results.setSourceShown(record, !chosen)
            }

            onObjectAdded: (index, object) => switches.insertItem(index, object as T.MenuItem)
            onObjectRemoved: (index, object) => switches.removeItem(object as T.MenuItem)
        }
    }
}
