import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// The surface that dialogs and sheets come on: over the dimmed window, in its middle, with the
/// keyboard to itself. When it closes, the control that had the keyboard before gets it back.
T.Popup {
    id: sheet

    /// What the keyboard is on when the sheet opens.
    property Item initialFocus: null
    /// The name for screen readers.
    property string title

    property Item opener: null
    /// How far below its place it still is.
    property real drop: 0

    parent: T.Overlay.overlay
    x: Math.round(((parent ? parent.width : 0) - width) / 2)
    y: Math.round(((parent ? parent.height : 0) - height) / 2 + drop)
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    modal: true
    dim: true
    focus: true
    padding: 1
    closePolicy: T.Popup.CloseOnEscape

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }
    background: Item {
        Repeater {
            model: [9, 4, 1]
            Rectangle {
                required property int modelData
                required property int index
                anchors.fill: parent
                anchors.margins: -modelData
                anchors.topMargin: 0
                anchors.bottomMargin: -2 * modelData
                radius: 14 + modelData
                color: Theme.rings[2 - index]
            }
        }
        Rectangle {
            anchors.fill: parent
            radius: 14
            color: Theme.elevated
            border.width: 1
            border.color: Theme.border
        }
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.sheetInTime; easing.type: Easing.OutCubic }
        NumberAnimation { property: "drop"; from: 8; to: 0; duration: Theme.sheetInTime; easing.type: Easing.OutCubic }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.sheetOutTime; easing.type: Easing.InCubic }
    }

    onAboutToShow: opener = parent && parent.Window.window ? parent.Window.window.activeFocusItem : null
    onOpened: {
        if (!initialFocus)
            return;
        initialFocus.forceActiveFocus(Qt.TabFocusReason);
        // Opened once more, it has the focus already, and for the reason of the click before.
        const control = initialFocus as T.Control;
        if (control)
            control.focusReason = Qt.TabFocusReason;
    }
    onClosed: {
        if (opener)
            opener.forceActiveFocus(Qt.PopupFocusReason);
        opener = null;
    }
}
