// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Column {
    id: text

    required property var app // an AppState
    required property var item // a MediaItem

    spacing: 10

    Label {
        font.bold: true
        font.pixelSize: Theme.title
        heading: true
        text: text.item.title
        width: parent.width
        wrapMode: Text.Wrap
    }
    Label {
        color: Theme.secondary
        text: text.item.credits
        visible: text.item.credits !== ""
        width: parent.width
        wrapMode: Text.Wrap
    }
    Label {
        color: Theme.secondary
        font.pixelSize: Theme.caption
        text: text.item.subjects
        visible: text.item.subjects !== ""
        width: parent.width
        wrapMode: Text.Wrap
    }
    Label {
        color: Qt.rgba(1, 1, 1, 0.8)
        font.pixelSize: Theme.callout
        lineHeight: 1.25
        text: text.item.summary ?? ""
        visible: !!text.item.summary
        width: parent.width
        wrapMode: Text.Wrap
    }
    Licence {
        app: text.app
        link: text.item.licenseLink
        text: text.item.license
        width: parent.width
    }
    Link {
        app: text.app
        destination: text.item.pageURL
        text: qsTr("View on Orvella")
    }
}
