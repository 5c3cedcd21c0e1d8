// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tavelo

// A menu of switches: one a source, on while its results are shown.
PickerFace {
    id: picker

    required property TorrentResultModel results

    readonly property var hidden: results.hiddenSources

    menu: switches
    text: qsTr("Sources")

    T.Menu {
        id: switches

        closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
        implicitHeight: contentHeight + topPadding + bottomPadding
        implicitWidth: Math.min(280, Math.max(140, contentWidth + leftPadding + rightPadding))
        margins: 8
        padding: 5
        y: picker.height + 4

        onAboutToShow: currentIndex = -1

        Instantiator {
            model: ListAdaptor {
                records: picker.results.sources
            }

            delegate: ChoiceRow {
                required property string record

                checkable: true
                checked: chosen
                chosen: !picker.hidden.includes(record)
                label: record

                onTriggered: picker.results.setSourceShown(record, !chosen)
            }

            onObjectAdded: (index, object) => switches.insertItem(index, object as T.MenuItem)
            onObjectRemoved: (index, object) => switches.removeItem(object as T.MenuItem)
        }

        background: Rectangle {
            border.color: Theme.hairline
            color: Theme.popup
            radius: Theme.radius
        }
        contentItem: ListView {
            clip: true
            implicitHeight: contentHeight
            implicitWidth: contentItem.childrenRect.width
            interactive: contentHeight > height
            model: switches.contentModel
        }
    }
}
