// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// What can be done with the text of a field, where the field was clicked.
MenuPanel {
    id: menu

    required property T.TextField field

    readonly property bool copiable: field.selectedText !== "" && field.echoMode === TextInput.Normal

    title: qsTr("Edit")

    onClosed: field.forceActiveFocus(Qt.PopupFocusReason)

    MenuRow {
        enabled: menu.copiable
        label: qsTr("Cut")

        onTriggered: menu.field.cut()
    }
    MenuRow {
        enabled: menu.copiable
        label: qsTr("Copy")

        onTriggered: menu.field.copy()
    }
    MenuRow {
        enabled: menu.field.canPaste
        label: qsTr("Paste")

        onTriggered: menu.field.paste()
    }
    MenuDivider {
    }
    MenuRow {
        enabled: menu.field.length > 0
        label: qsTr("Select All")

        onTriggered: menu.field.selectAll()
    }
}
