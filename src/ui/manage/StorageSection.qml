// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

FormSection {
    id: section

    required property var app // an AppState

    title: qsTr("Storage")

    FolderRow {
        path: section.app.settings.cachePath
        ruled: false
        title: qsTr("Cache folder")

        onChosen: folder => section.app.useCacheFolder(folder)
    }
    FormCaption {
        color: Theme.warning
        ruled: false
        text: section.app.cache.folderProblem
        visible: text !== ""
    }
    FolderRow {
        path: section.app.settings.downloadsPath
        title: qsTr("Saved downloads folder")

        onChosen: folder => section.app.useDownloadsFolder(folder)
    }
    FormRow {
        Stepper {
            maximumValue: 51200
            minimumValue: 128
            stepSize: 128
            text: StorageText.cacheLimit(section.app.settings.cacheLimitMB)
            value: section.app.settings.cacheLimitMB
            width: parent.width

            onMoved: value => section.app.settings.cacheLimitMB = value
        }
    }
    FormRow {
        Stepper {
            maximumValue: 90
            minimumValue: 0
            text: StorageText.autoClean(section.app.settings.autoCleanDays)
            value: section.app.settings.autoCleanDays
            width: parent.width

            onMoved: value => section.app.settings.autoCleanDays = value
        }
    }
    FormCaption {
        color: Theme.primary
        pixelSize: Theme.body
        text: StorageText.cacheUse(section.app.cache.usedBytes, section.app.cache.freeBytes)
    }
    FormRow {
        Flow {
            spacing: Theme.grid
            width: parent.width

            PushButton {
                text: qsTr("Clean Now")

                onClicked: section.app.cache.enforce()
            }
            PushButton {
                text: qsTr("Clear Cache")

                onClicked: section.app.cache.clear()
            }
            PushButton {
                text: qsTr("Clear Watch History")

                onClicked: section.app.library.clear()
            }
        }
    }
    FormCaption {
        text: qsTr("Cleanup only touches the cache folder. Files in the saved downloads folder are "
                   + "never removed automatically.")
    }
}
