import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// A page that scrolls when the window is too small for it: by wheel, by its bar, and once it has
/// the keyboard by the keys that scroll. What the Tab key reaches comes into sight.
Flickable {
    id: page

    readonly property bool fits: contentHeight <= height

    function scrollBy(distance: real) {
        contentY = Math.max(0, Math.min(contentHeight - height, contentY + distance));
    }

    /// Scrolls until all of `item` is in sight, if it is on the page.
    function show(item: Item) {
        let above = item;
        while (above && above !== contentItem)
            above = above.parent;
        if (!above || fits)
            return;
        const top = item.mapToItem(contentItem, 0, 0).y - 20;
        const bottom = top + 20 + item.height + 48; // with the edges of what it stands on
        if (top < contentY)
            scrollBy(top - contentY);
        else if (bottom > contentY + height)
            scrollBy(bottom - contentY - height);
    }

    contentWidth: width
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    activeFocusOnTab: !fits
    Accessible.role: Accessible.Pane
    Accessible.name: "Page"
    Accessible.focusable: !fits
    Keys.onPressed: event => {
        const distance = {
            [Qt.Key_Down]: 40,
            [Qt.Key_Up]: -40,
            [Qt.Key_PageDown]: height - 40,
            [Qt.Key_PageUp]: 40 - height,
            [Qt.Key_End]: contentHeight,
            [Qt.Key_Home]: -contentHeight
        }[event.key];
        if (distance === undefined || fits)
            return;
        scrollBy(distance);
        event.accepted = true;
    }
    T.ScrollBar.vertical: AppScrollBar {}

    // Later, because what was clicked must not move before the button is up; only the keys show
    // where the keyboard is. What comes up above it may push it out of sight again.
    Window.onActiveFocusItemChanged: reveal.restart()
    onContentHeightChanged: reveal.restart()
    Timer {
        id: reveal
        interval: 0
        onTriggered: {
            const focused = page.Window.activeFocusItem;
            const control = focused as T.Control;
            // What is no control is reached by key only.
            if (focused && (control ? control.visualFocus : focused.activeFocusOnTab))
                page.show(focused);
        }
    }

    FocusRing {
        parent: page
        visible: page.activeFocus
        anchors.fill: parent
        anchors.margins: 2
        radius: 6
    }
}
