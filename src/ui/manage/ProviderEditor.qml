// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

Sheet {
    id: sheet

    required property var app // an AppState

    closePolicy: T.Popup.CloseOnEscape // a click beside it would lose what was typed
    padding: Theme.inset
    title: qsTr("Add Provider")
    visible: true
    width: 520

    contentItem: ProviderForm {
        focus: true
        title: sheet.title

        Component.onCompleted: takeFocus()
        onCancelled: sheet.close()
        onSubmitted: draft => {
            if (draft.addTo(sheet.app.registry))
                sheet.close();
        }
    }
}
