// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A part of the window that is read in when it is first wanted, and is gone when it is not. One
// that is foreseen is read in little by little while there is nothing else to do, and stays. Its
// file, below the module's folder, has `app` for a required property.
Loader {
    required property var app // an AppState
    required property string file
    property bool foreseen: false
    property bool wanted: false

    function follow() {
        const kept = wanted || foreseen;
        if (!kept || (wanted && status === Loader.Loading))
            source = ""; // what is wanted is wanted at once
        asynchronous = !wanted;
        if (kept && status === Loader.Null)
            setSource("qrc:/qt/qml/Tavelo/" + file, { app: app });
    }

    visible: wanted

    Component.onCompleted: follow()
    onForeseenChanged: follow()
    onWantedChanged: follow()
}
