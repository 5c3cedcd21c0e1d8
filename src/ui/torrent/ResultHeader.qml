// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

FocusScope {
    id: header

    required property ResultColumns columns
    required property TorrentResultModel results

    implicitHeight: 28

    Rectangle {
        anchors.bottom: parent.bottom
        color: Theme.hairline
        height: 1
        width: parent.width
    }
    Row {
        spacing: header.columns.gap
        x: header.columns.padding

        HeaderCell {
            results: header.results
            sortKey: TorrentSort.Title
            text: qsTr("Title")
            width: header.columns.title
        }
        HeaderCell {
            column: 0
            columns: header.columns
            results: header.results
            sortKey: TorrentSort.Size
            text: qsTr("Size")
            trailing: true
            width: header.columns.widths[0]
        }
        HeaderCell {
            column: 1
            columns: header.columns
            results: header.results
            sortKey: TorrentSort.Seeds
            text: qsTr("Seeds")
            trailing: true
            width: header.columns.widths[1]
        }
        HeaderCell {
            column: 2
            columns: header.columns
            results: header.results
            sortKey: TorrentSort.Peers
            text: qsTr("Peers")
            trailing: true
            width: header.columns.widths[2]
        }
        HeaderCell {
            column: 3
            columns: header.columns
            leftPadding: 8
            results: header.results
            text: qsTr("Quality")
            width: header.columns.widths[3]
        }
        HeaderCell {
            column: 4
            columns: header.columns
            results: header.results
            text: qsTr("Fmt")
            width: header.columns.widths[4]
        }
        HeaderCell {
            column: 5
            columns: header.columns
            results: header.results
            sortKey: TorrentSort.Source
            text: qsTr("Source")
            width: header.columns.widths[5]
        }
    }
}
