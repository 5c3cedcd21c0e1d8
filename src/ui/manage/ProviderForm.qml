// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Tavelo

// Fills in a provider. Return in a field does what the last button does.
FocusScope {
    id: form

    required property string title

    signal cancelled()
    signal submitted(ProviderDraft draft)

    function takeFocus() {
        name.forceActiveFocus(Qt.PopupFocusReason);
    }

    implicitHeight: column.implicitHeight

    ProviderDraft {
        id: draft
    }
    ColumnLayout {
        id: column

        spacing: 12
        width: parent.width

        Label {
            Layout.bottomMargin: 4
            font.bold: true
            font.pixelSize: Theme.title2
            heading: true
            text: form.title
        }
        TextEntry {
            id: name

            Layout.fillWidth: true
            focus: true
            placeholderText: qsTr("Name")

            onAccepted: form.submitted(draft)
            onTextChanged: draft.name = text
        }
        Picker {
            Layout.fillWidth: true
            choices: draft.kinds
            current: draft.kind
            text: qsTr("Type")

            onChosen: value => draft.kind = value
        }
        TextEntry {
            Layout.fillWidth: true
            inputMethodHints: Qt.ImhUrlCharactersOnly | Qt.ImhNoPredictiveText
            placeholderText: qsTr("Base URL (e.g. %1)").arg(
                "http://localhost:9117/api/v2.0/indexers/all/results/torznab/api")

            onAccepted: form.submitted(draft)
            onTextChanged: draft.url = text
        }
        TextEntry {
            Layout.fillWidth: true
            echoMode: TextInput.Password
            inputMethodHints: Qt.ImhSensitiveData | Qt.ImhNoPredictiveText
            placeholderText: qsTr("API key (optional)")

            onAccepted: form.submitted(draft)
            onTextChanged: draft.key = text
        }
        RowLayout {
            Layout.topMargin: 8
            spacing: Theme.grid

            Item {
                Layout.fillWidth: true
            }
            PushButton {
                text: qsTr("Cancel")

                onClicked: form.cancelled()
            }
            PushButton {
                enabled: draft.acceptable
                prominent: true
                text: qsTr("Add")

                onClicked: form.submitted(draft)
            }
        }
    }
}
