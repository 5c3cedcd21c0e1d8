// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound

import QtQuick
import Tavelo

FormSection {
    id: section

    required property var app // an AppState

    signal addWanted()

    // The keyboard stays in the list that gets shorter.
    function remove(index: int, config: var, byKey: bool) {
        const next = rows.itemAt(index + 1) as ProviderRow
                     ?? rows.itemAt(index - 1) as ProviderRow;
        if (byKey && next)
            next.takeFocus();
        else if (byKey)
            add.forceActiveFocus(Qt.TabFocusReason);
        section.app.registry.remove(config.id);
    }

    title: qsTr("Metadata Providers")

    Repeater {
        id: rows

        model: ListAdaptor {
            key: "id"
            records: section.app.settings.providers
        }

        ProviderRow {
            id: row

            required property int index

            ruled: index > 0

            onRemoveWanted: byKey => section.remove(row.index, row.record, byKey)
            onSwitched: on => section.app.registry.setEnabled(row.record.id, on)
        }
    }
    FormRow {
        ruled: rows.count > 0

        PushButton {
            id: add

            text: qsTr("Add Provider…")

            onClicked: section.addWanted()
        }
    }
    FormCaption {
        text: qsTr("Providers are queried only when you search, and only for metadata. Third-party "
                   + "index availability and legality vary by region; you're responsible for what "
                   + "you access.")
    }
}
