// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

Item {
    id: body

    required property HoverTip tip

    Tip {
        delay: 600
        text: body.tip.text
        visible: body.tip.wanted && text !== ""
    }
}
