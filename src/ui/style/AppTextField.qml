import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// A field to type a filter or a path into.
T.TextField {
    id: field

    property string symbol
    /// The cross and Escape empty the field.
    property bool clears: true

    implicitWidth: 220
    implicitHeight: 32
    leftPadding: symbol === "" ? 11 : 34
    rightPadding: text === "" || !clears ? 11 : 34
    topPadding: 0
    bottomPadding: 0
    verticalAlignment: TextInput.AlignVCenter
    color: Theme.text
    selectionColor: Theme.accentSolid
    selectedTextColor: Theme.onSolid
    placeholderTextColor: Theme.text3
    font.family: Theme.family
    font.pixelSize: 13
    renderType: Text.NativeRendering
    selectByMouse: true
    opacity: enabled ? 1 : 0.45
    Accessible.name: placeholderText
    // Else the window's own Escape would have it, and stop a scan.
    Keys.onShortcutOverride: event => event.accepted = clears && event.key === Qt.Key_Escape && text !== ""
    Keys.onEscapePressed: event => {
        event.accepted = clears && text !== "";
        if (clears)
            clear();
    }

    cursorDelegate: Rectangle {
        id: caret
        width: 1
        color: Theme.accent
        visible: field.cursorVisible
        Timer {
            running: field.cursorVisible && !Theme.reducedMotion
            interval: 530
            repeat: true
            onTriggered: caret.opacity = 1 - caret.opacity
            onRunningChanged: caret.opacity = 1
        }
    }
    background: Rectangle {
        radius: 8
        color: Theme.surface
        border.width: 1
        border.color: field.activeFocus ? Theme.accent : Theme.outline
        Rectangle {
            visible: field.activeFocus
            anchors.fill: parent
            anchors.margins: -2
            radius: 10
            color: "transparent"
            border.width: 2
            border.color: Theme.tint(Theme.accent, 0.55)
        }
    }
    AppText {
        x: field.leftPadding
        anchors.verticalCenter: parent.verticalCenter
        width: field.width - field.leftPadding - field.rightPadding
        visible: field.text === "" && field.preeditText === ""
        text: field.placeholderText
        elide: Text.ElideRight
        color: Theme.text3
        Accessible.ignored: true
    }
    SymbolIcon {
        x: 11
        anchors.verticalCenter: parent.verticalCenter
        visible: field.symbol !== ""
        name: field.symbol
        color: Theme.text3
    }
    T.AbstractButton {
        id: cross
        anchors.right: parent.right
        anchors.rightMargin: 3
        anchors.verticalCenter: parent.verticalCenter
        visible: field.clears && field.text !== ""
        implicitWidth: 26
        implicitHeight: 26
        focusPolicy: Qt.NoFocus
        hoverEnabled: true
        Accessible.role: Accessible.Button
        Accessible.name: "Clear"
        onClicked: {
            field.clear();
            field.forceActiveFocus();
        }
        contentItem: Item {
            SymbolIcon {
                anchors.centerIn: parent
                name: "xmark"
                size: 14
                color: cross.hovered ? Theme.text : Theme.text2
            }
        }
    }
}
