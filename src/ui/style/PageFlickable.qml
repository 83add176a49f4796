import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// A page that scrolls when the window is too small for it: by wheel, by its bar, and once it has
/// the keyboard by the keys that scroll.
Flickable {
    id: page

    readonly property bool fits: contentHeight <= height

    function scrollBy(distance: real) {
        contentY = Math.max(0, Math.min(contentHeight - height, contentY + distance));
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

    FocusRing {
        parent: page
        visible: page.activeFocus
        anchors.fill: parent
        anchors.margins: 2
        radius: 6
    }
}
