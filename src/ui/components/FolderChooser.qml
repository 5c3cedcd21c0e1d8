// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Dialogs

// Asks for a folder, by the desktop's own dialog where it has one.
FolderDialog {
    signal chosen(url folder)

    modality: Qt.WindowModal

    onAccepted: chosen(selectedFolder)
}
