// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

FormRow {
    id: row

    required property var record // a ProviderConfig

    signal switched(bool on)
    signal removeWanted(bool byKey)

    function takeFocus() {
        trash.forceActiveFocus(Qt.TabFocusReason);
    }

    Toggle {
        anchors.left: parent.left
        anchors.right: trash.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        caption: StorageText.provider(row.record)
        checked: row.record.enabled
        text: row.record.name

        onToggled: row.switched(checked)
    }
    IconButton {
        id: trash

        anchors.right: parent.right
        anchors.rightMargin: -6
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondary
        iconSize: 18
        symbol: "trash"
        text: qsTr("Remove %1").arg(row.record.name)

        onClicked: row.removeWanted(activeFocus)
    }
}
