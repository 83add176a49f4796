import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// Shows the chosen one of a few texts, and all of them in a menu.
T.ComboBox {
    id: picker

    /// What is chosen here, for screen readers; it stands beside the picker as a text of its own.
    required property string label

    /// Return is down; its release would close the menu again, so it opens it.
    property bool willOpen: false
    /// The width of the widest text.
    readonly property real widest: {
        let width = 0;
        for (const text of model)
            width = Math.max(width, metrics.advanceWidth(text));
        return width;
    }

    implicitHeight: 28
    implicitWidth: Math.ceil(widest) + leftPadding + rightPadding
    leftPadding: 10
    rightPadding: 30
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    opacity: enabled ? 1 : 0.45
    Keys.onReturnPressed: event => event.accepted = willOpen = !popup.visible
    Keys.onEnterPressed: event => event.accepted = willOpen = !popup.visible
    Keys.onReleased: event => {
        if (!willOpen || event.key !== Qt.Key_Return && event.key !== Qt.Key_Enter)
            return;
        willOpen = false;
        popup.open();
        event.accepted = true;
    }
    Accessible.role: Accessible.ComboBox
    Accessible.name: label
    Accessible.description: displayText
    Accessible.onPressAction: popup.open()

    FontMetrics {
        id: metrics
        font.family: Theme.family
        font.pixelSize: 13
        font.weight: 500
    }
    contentItem: Item {
        AppText {
            anchors.verticalCenter: parent.verticalCenter
            text: picker.displayText
            weight: 500
            Accessible.ignored: true
        }
    }
    indicator: SymbolIcon {
        x: picker.width - width - 8
        anchors.verticalCenter: parent.verticalCenter
        name: "chevron.up.chevron.down"
        size: 12
    }
    background: Rectangle {
        radius: 7
        color: picker.down ? Theme.buttonPress : picker.hovered ? Theme.buttonHover : Theme.button
        border.width: 1
        border.color: Theme.buttonEdge
        FocusRing {
            visible: picker.visualFocus
            controlRadius: 7
        }
    }
    delegate: T.ItemDelegate {
        id: choice
        required property int index
        required property string modelData
        width: ListView.view ? ListView.view.width : 0
        implicitHeight: 30
        highlighted: picker.highlightedIndex === index
        readonly property int accessibleRole: Accessible.MenuItem
        Accessible.role: accessibleRole
        Accessible.name: modelData
        AccessibleRow {
            row: choice.index
            focused: choice.highlighted && picker.popup.opened
        }
        background: Rectangle {
            radius: 7
            visible: choice.highlighted
            color: choice.pressed ? Theme.accentSolidPress : Theme.accentSolid
        }
        contentItem: Item {
            SymbolIcon {
                x: 6
                anchors.verticalCenter: parent.verticalCenter
                visible: picker.currentIndex === choice.index
                name: "checkmark"
                color: choice.highlighted ? Theme.onSolid : Theme.text2
            }
            AppText {
                x: 26
                anchors.verticalCenter: parent.verticalCenter
                text: choice.modelData
                color: choice.highlighted ? Theme.onSolid : Theme.text
                Accessible.ignored: true
            }
        }
    }
    popup: T.Popup {
        readonly property int accessibleRole: Accessible.PopupMenu
        readonly property string title: picker.label
        x: picker.width - width
        y: picker.height + 4
        width: Math.ceil(picker.widest) + 56
        implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
        padding: 6
        margins: 8
        contentItem: ListView {
            implicitHeight: contentHeight
            model: picker.delegateModel
            currentIndex: picker.highlightedIndex
            interactive: false
            highlightMoveDuration: 0
        }
        background: Rectangle {
            radius: 11
            color: Theme.elevated
            border.width: 1
            border.color: Theme.border
        }
    }
}
