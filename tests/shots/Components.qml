import QtQuick
import Kestavon.Ui

/// The shared parts side by side, in the states that no single screen shows together.
Rectangle {
    id: gallery

    required property UiStates ui
    required property string themeChoice
    /// Label, symbol and colour of each threat level.
    required property var badges

    width: 1080
    height: 640
    color: Theme.bg
    Component.onCompleted: {
        Theme.choice = themeChoice;
        Theme.reducedMotion = true;
    }

    Column {
        x: 28
        y: 28
        width: parent.width - 56
        spacing: 20

        Repeater {
            model: [true, false]
            Row {
                id: buttons
                required property bool modelData
                spacing: 8
                enabled: modelData
                AppButton { label: "Scan Storage"; symbol: "magnifyingglass"; kind: AppButton.Kind.Prominent }
                AppButton { label: "Clean All"; symbol: "sparkles"; kind: AppButton.Kind.PurpleProminent }
                AppButton { label: "Delete Forever"; symbol: "trash.fill"; kind: AppButton.Kind.DestructiveProminent }
                AppButton { label: "Move to Trash"; symbol: "trash" }
                AppButton { label: "Clear All"; kind: AppButton.Kind.RedBordered }
                AppButton { label: "Clear"; kind: AppButton.Kind.Plain }
                AppButton { label: "Review & Clean"; symbol: "sparkles"; small: true }
                AppButton { label: "Optimizing…"; busy: true }
            }
        }
        Row {
            spacing: 20
            AppTextField { placeholderText: "Filter…" }
            AppTextField { symbol: "magnifyingglass"; text: "edit" }
            AppCheckBox { label: "Off" }
            AppCheckBox { label: "On"; checked: true }
            AppCheckBox { label: "Some"; mixed: true }
        }
        Row {
            spacing: 8
            Repeater {
                model: gallery.badges
                ThreatBadge {
                    required property var modelData
                    label: modelData.label
                    symbol: modelData.symbol
                    colorName: modelData.color
                }
            }
        }
        Row {
            spacing: 20
            Repeater {
                model: [0.004, 0.5, 0.8, 0.95, 1]
                ShadedBar {
                    required property int index
                    required property real modelData
                    width: 188
                    fill: modelData
                    tone: Theme.graphic(["accent", "accent", "orange", "red", "red"][index])
                }
            }
        }
        MemoryBar {
            width: parent.width
            memory: gallery.ui.memoryBar
        }
        FullDiskAccessBanner {
            width: parent.width
            shell: gallery.ui.shell
        }
        Row {
            spacing: 20
            PulsingDot {}
            Spinner { size: 13 }
            Spinner { size: 16 }
            Spinner { size: 20 }
            SymbolTile { symbol: "internaldrive.fill"; colorName: "purple" }
            SymbolTile { symbol: "doc.fill"; colorName: "ember"; size: 44 }
        }
        Card {
            width: parent.width
            height: 50
            ActivityRow {
                x: 19
                width: parent.width - 38
                title: "An event whose title is so long that it cannot possibly fit beside the time that stands at the end of the very same row"
                detail: "1 items scanned"
                age: "5 minutes ago"
                path: null
                pathActions: null
            }
        }
    }
}
