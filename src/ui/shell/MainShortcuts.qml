import QtQuick
import Kestavon.Ui

/// The keys of the main window.
Item {
    id: shortcuts

    required property ShellState shell
    required property NoticeState undoOffer
    required property WorkState work
    required property DuplicatesState duplicates
    required property SmartCleanState smartClean

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
        enabled: shortcuts.work.canStop || shortcuts.shell.isScanning || shortcuts.duplicates.analyzing
            || shortcuts.smartClean.scanning
        // What changes files first, and one thing at a time.
        onActivated: {
            if (shortcuts.work.canStop)
                shortcuts.work.stop();
            else if (shortcuts.shell.isScanning)
                shortcuts.shell.stop();
            else if (shortcuts.duplicates.analyzing)
                shortcuts.duplicates.stop();
            else
                shortcuts.smartClean.stopScan();
        }
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
        model: 14
        Item {
            id: numbered
            required property int index
            readonly property string digit: (index + 1) % 10
            Shortcut {
                sequences: [numbered.index < 10 ? "Alt+" + numbered.digit : "Alt+Shift+" + numbered.digit]
                onActivated: shortcuts.shell.showRow(numbered.index)
            }
        }
    }
}
