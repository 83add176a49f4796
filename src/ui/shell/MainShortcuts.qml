import QtQuick
import Kestavon.Ui

/// The keys of the main window.
Item {
    id: shortcuts

    required property ShellState shell
    required property NoticeState undoOffer
    required property WorkState work

    signal filterRequested
    signal settingsRequested
    signal helpRequested

    Shortcut {
        sequences: [StandardKey.Open]
        onActivated: shortcuts.shell.chooseFolder()
    }
    Shortcut {
        sequences: ["F5", "Ctrl+R"]
        enabled: !shortcuts.shell.isScanning
        onActivated: shortcuts.shell.scan()
    }
    Shortcut {
        sequences: ["Esc"]
        enabled: shortcuts.shell.isScanning
        onActivated: shortcuts.shell.stop()
    }
    Shortcut {
        sequences: [StandardKey.Undo]
        enabled: shortcuts.undoOffer.shown
        onActivated: shortcuts.undoOffer.act()
    }
    Shortcut {
        sequences: ["Ctrl+."]
        enabled: shortcuts.work.canStop
        onActivated: shortcuts.work.stop()
    }
    Shortcut {
        sequences: [StandardKey.Find]
        onActivated: shortcuts.filterRequested()
    }
    Shortcut {
        sequences: ["Ctrl+,"]
        context: Qt.ApplicationShortcut
        onActivated: shortcuts.settingsRequested()
    }
    Shortcut {
        sequences: ["F1", "Ctrl+?"]
        onActivated: shortcuts.helpRequested()
    }
    Shortcut {
        sequences: ["Ctrl+Q"]
        context: Qt.ApplicationShortcut
        onActivated: Qt.quit()
    }
    Shortcut {
        sequences: ["Ctrl+PgUp"]
        onActivated: shortcuts.shell.showRow(shortcuts.shell.row - 1)
    }
    Shortcut {
        sequences: ["Ctrl+PgDown"]
        onActivated: shortcuts.shell.showRow(shortcuts.shell.row + 1)
    }
    Repeater {
        model: 9
        Item {
            id: numbered
            required property int index
            Shortcut {
                sequences: ["Alt+" + (numbered.index + 1)]
                onActivated: shortcuts.shell.showRow(numbered.index)
            }
        }
    }
}
