// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

T.AbstractButton {
    id: card

    required property string title
    property string subtitle: ""
    property url url
    property real progress: -1 // watched fraction; negative: no bar
    property bool ringed: visualFocus

    readonly property int posterHeight: Math.round(width * 1.4)

    focusPolicy: Qt.NoFocus
    implicitHeight: posterHeight + 6 + 2 * caption.lineHeight + 6 + 18
    text: title
    width: 150

    Accessible.description: subtitle
    Accessible.name: title

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }

    Poster {
        id: poster

        height: card.posterHeight
        hovered: card.hovered
        url: card.url
        width: card.width
        y: card.hovered && !card.down ? -3 : 0

        Behavior on y {
            NumberAnimation {
                duration: Theme.quick
                easing.type: Easing.OutCubic
            }
        }

        WatchedBar {
            anchors.bottom: parent.bottom
            progress: card.progress
            radius: poster.radius
            width: parent.width
        }
        PlayGlyph {
            anchors.centerIn: parent
            shown: card.hovered
        }
        FocusRing {
            around: 4
            radius: poster.radius + 4
            shown: card.ringed
        }
    }
    Label {
        id: caption

        Accessible.ignored: true
        anchors.top: parent.top
        anchors.topMargin: card.posterHeight + 6
        font.pixelSize: Theme.callout
        font.weight: Font.Medium
        lineHeight: 17
        lineHeightMode: Text.FixedHeight
        maximumLineCount: 2
        text: card.title
        width: card.width
        wrapMode: Text.Wrap
    }
    Label {
        Accessible.ignored: true
        anchors.top: caption.bottom
        anchors.topMargin: 6
        color: Theme.secondary
        font.pixelSize: Theme.caption
        horizontalAlignment: caption.effectiveHorizontalAlignment
        text: card.subtitle
        visible: text !== ""
        width: card.width
    }
}
