import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// The button. `label` is shown as it stands, "&" included; Space, Return and Enter press it.
T.AbstractButton {
    id: button

    enum Kind { Bordered, Prominent, DestructiveProminent, PurpleProminent, RedBordered, Plain, RedPlain }

    property string label
    property string symbol
    property int kind: AppButton.Kind.Bordered
    property bool small: false
    /// A spinner stands in the symbol's place; the size stays.
    property bool busy: false
    property int symbolSize: small ? 14 : 16
    property int gap: small ? 5 : 7
    /// What a click is about, where another may take its place while the button is held.
    property string subject
    /// In a click: it ends a press that was about something else.
    property bool outdated: false
    property string heldSubject
    /// It comes up where another button was: for the time of a double click it hears no mouse, which
    /// still means the other one.
    property bool shy: false
    readonly property bool settling: (guard.item as MouseArea)?.enabled ?? false
    /// Shown after a moment's hovering, also while the button is disabled.
    property string hint
    property color inkColor: solid ? Theme.onSolid : red ? Theme.ink("red") : Theme.text
    property color symbolColor: solid ? Theme.onSolid : red ? Theme.ink("red") : Theme.text2

    readonly property bool solid: kind === AppButton.Kind.Prominent || kind === AppButton.Kind.DestructiveProminent
        || kind === AppButton.Kind.PurpleProminent
    readonly property bool plain: kind === AppButton.Kind.Plain || kind === AppButton.Kind.RedPlain
    readonly property bool red: kind === AppButton.Kind.RedBordered || kind === AppButton.Kind.RedPlain
    readonly property bool hasSymbol: symbol !== "" || busy
    /// Rest, hover, press and edge.
    readonly property var fills: {
        if (kind === AppButton.Kind.Prominent)
            return [Theme.accentSolid, Theme.accentSolidHover, Theme.accentSolidPress, Theme.accentSolidEdge];
        if (kind === AppButton.Kind.DestructiveProminent)
            return [Theme.redSolid, Theme.redSolidHover, Theme.redSolidPress, Theme.redSolidEdge];
        if (kind === AppButton.Kind.PurpleProminent)
            return [Theme.purpleSolid, Theme.purpleSolidHover, Theme.purpleSolidPress, Theme.purpleSolidEdge];
        if (plain)
            return ["transparent", Theme.hover, Theme.press, "transparent"];
        return [Theme.button, Theme.buttonHover, Theme.buttonPress, Theme.buttonEdge];
    }

    implicitHeight: small ? 26 : 32
    // Whole pixels, or the edges of buttons in a row would blur.
    implicitWidth: Math.ceil(leftPadding + row.implicitWidth + rightPadding)
    leftPadding: (small ? hasSymbol ? 7 : 9 : hasSymbol ? 10 : 12) + 1
    rightPadding: (small ? 9 : 12) + 1
    opacity: enabled ? 1 : 0.45
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    onPressed: heldSubject = subject
    onCanceled: heldSubject = ""
    // Heard before those who use the button hear it. A click by key or by a screen reader may come
    // without a press.
    onClicked: {
        outdated = heldSubject !== "" && heldSubject !== subject;
        heldSubject = "";
    }
    // Return and Enter are ours, so that a press is a press whatever the key.
    Keys.onReturnPressed: event => event.isAutoRepeat || clicked()
    Keys.onEnterPressed: event => event.isAutoRepeat || clicked()
    Accessible.role: Accessible.Button
    Accessible.name: label
    Accessible.description: hint

    contentItem: Item {
        Row {
            id: row
            anchors.centerIn: parent
            spacing: button.gap
            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.symbol !== "" && !button.busy
                name: button.symbol
                size: button.symbolSize
                color: button.symbolColor
            }
            Loader {
                anchors.verticalCenter: parent.verticalCenter
                active: button.busy
                visible: active
                sourceComponent: Spinner {
                    size: button.symbolSize
                    color: button.symbolColor
                }
            }
            AppText {
                anchors.verticalCenter: parent.verticalCenter
                visible: text !== ""
                text: button.label
                role: button.small ? AppText.Role.Caption : AppText.Role.Body
                weight: button.solid && !button.small ? 600 : 500
                color: button.inkColor
                Accessible.ignored: true
            }
        }
    }
    background: Rectangle {
        radius: button.small ? 7 : 8
        color: button.pressed ? button.fills[2] : button.hovered ? button.fills[1] : button.fills[0]
        border.width: button.plain ? 0 : 1
        border.color: button.fills[3]
        Behavior on color {
            enabled: !button.pressed
            ColorAnimation { duration: Theme.hoverTime }
        }
        FocusRing {
            visible: button.visualFocus
            controlRadius: button.small ? 7 : 8
        }
    }
    Loader {
        active: button.hint !== "" && hover.hovered
        sourceComponent: AppToolTip {
            parent: button
            text: button.hint
            visible: true
        }
    }
    Loader {
        id: guard
        anchors.fill: parent
        active: button.shy
        sourceComponent: MouseArea {
            enabled: sinceMove.running
            Timer {
                id: sinceMove
                interval: Application.styleHints.mouseDoubleClickInterval
                running: true
            }
            Connections {
                target: button
                function onVisibleChanged() {
                    sinceMove.restart();
                }
                function onXChanged() {
                    sinceMove.restart();
                }
            }
        }
    }
    HoverHandler {
        id: hover
        enabled: button.hint !== ""
    }
}
