// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick

// The tooltip of what it fills; made when it is first wanted, for most never are.
Loader {
    id: tip

    property string text: ""
    property bool wanted: false

    anchors.fill: parent

    onWantedChanged: {
        if (wanted && status === Loader.Null)
            setSource("qrc:/qt/qml/Tavelo/components/HoverTipBody.qml", { tip: tip });
    }
}
