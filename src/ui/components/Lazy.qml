// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A part of the window that is read in when it is first wanted, and is gone when it is not. Its
// file, below the module's folder, has `app` for a required property.
Loader {
    required property var app // an AppState
    required property string file
    property bool wanted: false

    function follow() {
        if (!wanted)
            source = "";
        else if (status === Loader.Null)
            setSource("qrc:/qt/qml/Tavelo/" + file, { app: app });
    }

    visible: wanted

    Component.onCompleted: follow()
    onWantedChanged: follow()
}
