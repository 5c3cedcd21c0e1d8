// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Tavelo

// One long list between blocks that scroll with it. The list is one stop for the Tab key: up and
// down go from row to row, left and right along a row's buttons, Return and Space press, Delete
// removes, Alt with up or down moves the row itself. The delegate's root is a ListRow; one without buttons is passed over.
FocusScope {
    id: page

    property string title // the list's name
    property real margin: Theme.inset // above the blocks
    property alias delegate: list.delegate
    property alias head: head.data // above the rows
    property alias model: list.model
    property alias outro: outro.data // below the rows
    property alias spacing: list.spacing
    readonly property alias list: list

    property int column: 0

    function current(): ListRow {
        return list.currentItem as ListRow;
    }
    function step(by: int): bool {
        const from = list.currentIndex;
        for (let index = from + by; index >= 0 && index < list.count; index += by) {
            list.currentIndex = index;
            if (current()?.buttons.length > 0)
                return true;
        }
        list.currentIndex = from;
        return false;
    }
    function settle() {
        if (!(current()?.buttons.length > 0) && !step(1))
            step(-1);
    }
    function go(by: int) {
        settle();
        if (!step(by))
            keys.scroll(by * Infinity);
    }
    function arrow(event: KeyEvent, by: int) {
        if (!(event.modifiers & Qt.AltModifier))
            go(by);
        else if (current()?.movable)
            current().shifted(by);
    }
    function turn(by: int) {
        const last = (current()?.buttons.length ?? 1) - 1;
        column = Math.max(0, Math.min(last, Math.min(column, last) + by));
    }
    function press(event: KeyEvent) {
        if (event.isAutoRepeat)
            return;
        const buttons = current()?.buttons ?? [];
        buttons[Math.min(column, buttons.length - 1)]?.clicked();
    }
    function enter(event: KeyEvent) {
        event.accepted = list.count > 0;
        if (event.accepted)
            list.forceActiveFocus(Qt.TabFocusReason);
    }

    clip: true
    focus: true

    Keys.onDownPressed: event => page.enter(event)
    Keys.onPressed: event => keys.press(event)
    Keys.onTabPressed: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
    Keys.onUpPressed: event => page.enter(event)

    Timer {
        id: soon

        interval: 0 // once the rows are there

        onTriggered: page.settle()
    }
    ScrollKeys {
        id: keys

        view: list
    }
    FocusReveal {
        blocks: [head, outro]
        view: list
    }
    // Beside the list, not in it, for the Tab key comes here first.
    Column {
        id: head

        spacing: 16
        width: parent.width - 2 * Theme.inset
        x: Theme.inset
        y: list.originY - list.contentY - height - list.gap
        z: 1
    }
    ListView {
        id: list

        readonly property int gap: 16 // between the rows and what is above and below

        Accessible.name: page.title
        Accessible.role: Accessible.List
        activeFocusOnTab: count > 0
        anchors.fill: parent
        bottomMargin: Theme.inset + (outro.height > 0 ? outro.height + gap : 0)
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 150
        keyNavigationEnabled: false
        preferredHighlightBegin: Theme.inset
        preferredHighlightEnd: height - Theme.inset
        spacing: 6
        topMargin: page.margin + head.height + gap

        T.ScrollBar.vertical: ScrollThumb {
        }

        Keys.onDeletePressed: page.current()?.remover?.clicked()
        Keys.onDownPressed: event => page.arrow(event, 1)
        Keys.onEnterPressed: event => page.press(event)
        Keys.onLeftPressed: page.turn(-1)
        Keys.onReturnPressed: event => page.press(event)
        Keys.onRightPressed: page.turn(1)
        Keys.onSpacePressed: event => page.press(event)
        Keys.onUpPressed: event => page.arrow(event, -1)
        onActiveFocusChanged: if (activeFocus) page.settle()
        onCountChanged: if (activeFocus) soon.restart()
    }
    Column {
        id: outro

        spacing: 16
        width: head.width
        x: Theme.inset
        y: list.originY + list.contentHeight - list.contentY + (list.count > 0 ? list.gap : 0)
        z: 1
    }
}
