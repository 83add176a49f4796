import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// Disk and memory at a glance, and the way back to the window.
FocusScope {
    id: menu

    required property UiStates ui
    readonly property StatusState status: ui.status

    /// The user chose something; close what shows this.
    signal done

    implicitWidth: 218
    implicitHeight: column.implicitHeight
    Keys.onDownPressed: move(1)
    Keys.onUpPressed: move(-1)

    readonly property list<Item> choices: [openKestavon, openSmartClean, quitKestavon]

    /// Gives the keyboard to the first choice, and shows it there.
    function takeKeyboard() {
        openKestavon.forceActiveFocus(Qt.TabFocusReason);
        openKestavon.focusReason = Qt.TabFocusReason; // it may have had the keyboard already
    }
    /// Moves the keyboard to the next choice, or from the last to the first.
    function move(step: int) {
        let at = 0;
        while (at < choices.length - 1 && !choices[at].activeFocus)
            ++at;
        choices[(at + step + choices.length) % choices.length].forceActiveFocus(Qt.TabFocusReason);
    }

    component Gauge: Item {
        id: gauge
        required property string symbol
        required property string label
        required property string freeText
        required property real fraction
        required property string colorName
        readonly property real value: Math.round(fraction * 100)
        readonly property real minimumValue: 0
        readonly property real maximumValue: 100
        width: parent.width
        height: 61
        Accessible.role: Accessible.ProgressBar
        Accessible.name: label + ", " + freeText + " free"
        SymbolIcon {
            x: 14
            y: 13
            name: gauge.symbol
        }
        AppText {
            x: 38
            y: 13
            text: gauge.label
            role: AppText.Role.Caption
            weight: 700
            Accessible.ignored: true
        }
        Rectangle {
            anchors.right: parent.right
            anchors.rightMargin: 14
            y: 19
            width: 90
            height: 5
            radius: 2.5
            color: Theme.track
            Rectangle {
                width: Math.round(90 * gauge.fraction)
                height: 5
                radius: 2.5
                color: Theme.graphic(gauge.colorName)
            }
        }
        Row {
            anchors.right: parent.right
            anchors.rightMargin: 14
            y: 32
            spacing: 4
            AppText {
                text: gauge.freeText
                role: AppText.Role.Caption
                Accessible.ignored: true
            }
            AppText {
                anchors.baseline: parent.children[0].baseline
                text: "free"
                role: AppText.Role.Micro
                weight: 400
                color: Theme.text2
                Accessible.ignored: true
            }
        }
        Hairline {
            x: 8
            y: 60
            width: parent.width - 16
        }
    }
    component Choice: T.AbstractButton {
        id: choice
        property string symbol
        property string label
        readonly property bool lit: hovered || visualFocus
        x: 6
        width: parent.width - 12
        height: 30
        hoverEnabled: true
        focusPolicy: Qt.StrongFocus
        Keys.onReturnPressed: clicked()
        Keys.onEnterPressed: clicked()
        readonly property int accessibleRole: Accessible.MenuItem
        Accessible.role: accessibleRole
        Accessible.name: label
        background: Rectangle {
            radius: 7
            visible: choice.lit
            color: choice.pressed ? Theme.accentSolidPress : Theme.accentSolid
        }
        contentItem: Item {
            SymbolIcon {
                x: 8
                anchors.verticalCenter: parent.verticalCenter
                visible: choice.symbol !== ""
                name: choice.symbol
                color: choice.lit ? Theme.onSolid : Theme.text2
            }
            AppText {
                x: choice.symbol === "" ? 8 : 32
                anchors.verticalCenter: parent.verticalCenter
                text: choice.label
                color: choice.lit ? Theme.onSolid : Theme.text
                Accessible.ignored: true
            }
        }
    }

    Column {
        id: column
        width: menu.width
        Gauge {
            symbol: "internaldrive"
            label: "Disk"
            freeText: menu.status.diskFree
            fraction: menu.status.diskBar
            colorName: menu.status.diskColor
        }
        Gauge {
            visible: menu.status.hasMemory
            symbol: "memorychip"
            label: "Memory"
            freeText: menu.status.memoryFree
            fraction: menu.status.memoryBar
            colorName: menu.status.memoryColor
        }
        Item { width: 1; height: 5 }
        Choice {
            id: openKestavon
            objectName: "openKestavon"
            focus: true
            symbol: "macwindow"
            label: "Open Kestavon"
            onClicked: {
                menu.done();
                menu.ui.shell.raise();
            }
        }
        Choice {
            id: openSmartClean
            objectName: "openSmartClean"
            symbol: "wand.and.sparkles"
            label: "Smart Clean…"
            onClicked: {
                menu.done();
                menu.ui.shell.showSmartClean();
                menu.ui.shell.raise();
            }
        }
        Item {
            width: parent.width
            height: 11
            Hairline {
                x: 8
                y: 5
                width: parent.width - 16
            }
        }
        Choice {
            id: quitKestavon
            objectName: "quitKestavon"
            label: "Quit Kestavon"
            onClicked: Qt.quit()
        }
        Item { width: 1; height: 6 }
    }
}
