// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// What a download does, where it is, or what keeps it; with a seal when it has been checked.
Item {
    id: status

    required property var task // a DownloadTask

    implicitHeight: words.height

    Label {
        id: words

        color: status.task.isTroubled ? Theme.warning : Theme.secondary
        elide: status.task.isFinished ? Text.ElideMiddle : Text.ElideRight
        font.pixelSize: Theme.caption
        maximumLineCount: status.task.isFinished ? 1 : 3
        text: status.task.status
        width: Math.min(implicitWidth, parent.width - (seal.visible ? seal.width + 6 : 0))
        wrapMode: status.task.isFinished ? Text.NoWrap : Text.Wrap
    }
    Icon {
        id: seal

        anchors.left: words.right
        anchors.leftMargin: 6
        anchors.verticalCenter: words.verticalCenter
        color: Theme.good
        name: "checkmark.seal"
        size: 14
        visible: status.task.isFinished && status.task.tip !== ""
    }
    HoverHandler {
        id: hover
    }
    HoverTip {
        text: status.task.tip
        wanted: hover.hovered && text !== ""
    }
}
