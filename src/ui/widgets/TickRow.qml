import QtQuick
import Kestavon.Ui

/// A row with a check box. A click anywhere in the row ticks it.
VirtualListRow {
    id: line

    required property bool ticked
    /// Names the check box for screen readers.
    required property string tickName
    /// Says more about the row, also below `tipParent` while the pointer is on the row.
    property string tickDescription
    property Item tipParent: null
    property real boxX: 18
    /// What the pointer lights up ends so far from the list's sides.
    property real inset: 8
    readonly property bool hovered: hover.hovered

    signal tick

    function choose() {
        list.choose(row);
        tick();
    }

    HoverFill {
        anchors.fill: parent
        anchors.leftMargin: line.inset
        anchors.rightMargin: line.inset
        anchors.topMargin: line.inset > 0 ? 2 : 0
        anchors.bottomMargin: line.inset > 0 ? 3 : 1
        radius: line.inset
        hovered: hover.hovered
        pressed: tap.pressed
    }
    AppCheckBox {
        x: line.boxX
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: -0.5
        focusPolicy: Qt.NoFocus // the row has the keyboard
        Accessible.name: line.tickName
        Accessible.description: line.tickDescription
        checked: line.ticked
        // The model has the tick; the box only shows it.
        nextCheckState: () => checkState
        onClicked: line.choose()
        Item {
            anchors.centerIn: parent
            width: 16
            height: 16
            FocusRing {
                visible: line.ringShown
                controlRadius: 4
            }
        }
    }
    HoverHandler {
        id: hover
    }
    Loader {
        active: hover.hovered && line.exists && line.tipParent !== null
        sourceComponent: AppToolTip {
            parent: line.tipParent
            x: 0
            text: line.tickDescription
            visible: true
        }
    }
    TapHandler {
        id: tap
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: line.choose()
    }
}
