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

        SortCell {
            columns: header.columns
            results: header.results
            sortKey: TorrentSort.Title
            text: qsTr("Title")
            width: header.columns.title
        }
        SortCell {
            column: 0
            columns: header.columns
            results: header.results
            sortKey: TorrentSort.Size
            text: qsTr("Size")
            trailing: true
            width: header.columns.widths[0]
        }
        SortCell {
            column: 1
            columns: header.columns
            results: header.results
            sortKey: TorrentSort.Seeds
            text: qsTr("Seeds")
            trailing: true
            width: header.columns.widths[1]
        }
        SortCell {
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
            indent: 8
            text: qsTr("Quality")
            width: header.columns.widths[3]
        }
        HeaderCell {
            column: 4
            columns: header.columns
            text: qsTr("Fmt")
            width: header.columns.widths[4]
        }
        SortCell {
            column: 5
            columns: header.columns
            results: header.results
            sortKey: TorrentSort.Source
            text: qsTr("Source")
            width: header.columns.widths[5]
        }
    }
}
