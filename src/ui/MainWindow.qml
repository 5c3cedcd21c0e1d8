// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Window
import Tavelo

Window {
    id: window

    required property AppState app

    property int visibilityBefore: Window.Windowed

    function toggleFullScreen() {
        if (!active)
            return;
        if (visibility === Window.FullScreen) {
            visibility = visibilityBefore;
        } else {
            visibilityBefore = visibility;
            visibility = Window.FullScreen;
        }
    }

    color: Theme.bg
    height: 820
    minimumHeight: 640
    minimumWidth: 980
    // For what the toolkit draws itself, where the desktop has no file dialog of its own.
    palette {
        base: Theme.bg
        button: Theme.popup
        buttonText: Theme.primary
        dark: Theme.tertiary
        highlight: Theme.accent
        highlightedText: Theme.accentInk
        light: Theme.panel
        mid: Theme.hairline
        text: Theme.primary
        window: Theme.panel
        windowText: Theme.primary
    }
    title: qsTr("Tavelo")
    visible: true
    width: 1240

    // A panel that goes leaves the focus to nobody; what had it before takes it back.
    onActiveFocusItemChanged: if (activeFocusItem === contentItem) root.forceActiveFocus()

    RootView {
        id: root

        anchors.fill: parent
        app: window.app
        focus: true
        fullScreen: window.visibility === Window.FullScreen

        onFullScreenToggled: window.toggleFullScreen()
        onQuitAsked: window.close()
    }
}
