// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Dialogs

// Asks for one file that exists, by the desktop's own dialog where it has one.
FileDialog {
    required property var extensions // texts, without the dot

    signal chosen(url file)

    fileMode: FileDialog.OpenFile
    modality: Qt.WindowModal
    nameFilters: [extensions.map(each => "*." + each).join(", ") + " ("
                  + extensions.map(each => "*." + each + " *." + each.toUpperCase()).join(" ") + ")"]

    onAccepted: chosen(selectedFile)
}
