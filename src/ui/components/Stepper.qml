// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import Tavelo

// A number between two bounds, changed in steps: by its buttons, by the up and down keys, and by
// the wheel while it has the focus. The number is `value`'s owner's to set.
FocusScope {
    id: stepper

    required property string text
    required property real value
    required property real minimumValue
    required property real maximumValue
    property real stepSize: 1

    signal moved(real value)

    function step(by: int) {
        const next = value + by * stepSize;
        const bounded = Math.max(minimumValue, Math.min(maximumValue, next));
        if ((bounded - value) * by > 0)
            moved(bounded);
    }

    activeFocusOnTab: true
    implicitHeight: 32
    implicitWidth: label.implicitWidth + 16 + buttons.width

    Accessible.name: text
    Accessible.role: Accessible.SpinBox
    Accessible.onDecreaseAction: step(-1)
    Accessible.onIncreaseAction: step(1)
    Keys.onDownPressed: step(-1)
    Keys.onUpPressed: step(1)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Minus || event.key === Qt.Key_Plus) {
            step(event.key === Qt.Key_Plus ? 1 : -1);
            event.accepted = true;
        }
    }

    TapHandler {
        onTapped: stepper.forceActiveFocus(Qt.MouseFocusReason)
    }
    WheelHandler {
        property real turned: 0 // since the last step, in eighths of a degree

        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        enabled: stepper.activeFocus

        onWheel: event => {
            const notches = Math.trunc((turned + event.angleDelta.y) / 120);
            turned += event.angleDelta.y - notches * 120;
            stepper.step(notches);
        }
    }
    Label {
        id: label

        Accessible.ignored: true
        anchors.left: parent.left
        anchors.right: buttons.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        text: stepper.text
    }
    Rectangle {
        id: buttons

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        border.color: Theme.hairline
        color: Theme.fill
        height: 28
        radius: 7
        width: row.width

        Row {
            id: row

            StepButton {
                enabled: stepper.value > stepper.minimumValue
                symbol: "minus"
                text: qsTr("Less")

                onClicked: stepper.step(-1)
            }
            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.hairline
                height: 16
                width: 1
            }
            StepButton {
                enabled: stepper.value < stepper.maximumValue
                symbol: "plus"
                text: qsTr("More")

                onClicked: stepper.step(1)
            }
        }
        FocusRing {
            shown: stepper.activeFocus
        }
    }
}
