import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// A check box; `label` beside it is part of the target. `mixed` shows a bar: some, not all.
T.CheckBox {
    id: box

    property string label
    property bool mixed: false

    implicitHeight: 26
    implicitWidth: 16 + (label === "" ? 0 : 8 + text.implicitWidth)
    padding: 0
    hoverEnabled: true
    opacity: enabled ? 1 : 0.45
    Accessible.name: label
    Accessible.checkStateMixed: mixed

    indicator: Rectangle {
        readonly property bool on: box.checked || box.mixed
        anchors.verticalCenter: parent.verticalCenter
        width: 16
        height: 16
        radius: 4
        color: on ? Theme.accentSolid : box.down ? Theme.buttonPress : Theme.surface
        border.width: 1
        border.color: on ? Theme.accentSolid : Theme.outline
        SymbolIcon {
            anchors.centerIn: parent
            visible: box.checked && !box.mixed
            name: "checkmark"
            size: 16
            color: Theme.onSolid
        }
        Rectangle {
            anchors.centerIn: parent
            visible: box.mixed
            width: 8
            height: 2
            radius: 1
            color: Theme.onSolid
        }
        FocusRing {
            visible: box.visualFocus
            controlRadius: 4
        }
    }
    contentItem: Item {
        AppText {
            id: text
            x: 24
            anchors.verticalCenter: parent.verticalCenter
            text: box.label
            visible: box.label !== ""
            Accessible.ignored: true
        }
    }
}
