import QtQuick
import Kestavon.Ui

/// Asks once for Full Disk Access and shows the way to it. Closes by itself when access is there.
Sheet {
    id: sheet

    property OnboardingState onboarding: null

    readonly property var steps: [
        {
            symbol: "folder.fill",
            color: "blue",
            title: "Access Any Folder",
            body: "Kestavon needs to read ~/Downloads, ~/Documents, ~/Desktop and Library folders to find junk files. Without this, macOS asks for permission every single folder."
        },
        {
            symbol: "cylinder.split.1x2",
            color: "purple",
            title: "Find Hidden Caches",
            body: "App caches, browser data, and developer tool waste live deep inside ~/Library. Full Disk Access lets Kestavon reach them without repeated prompts."
        },
        {
            symbol: "lock.shield.fill",
            color: "green",
            title: "One Grant, Done Forever",
            body: "Grant Full Disk Access once in System Settings. macOS won't ask again — Kestavon can scan silently in the background whenever you want."
        }
    ]
    readonly property var path: ["Open System Settings", "Privacy & Security", "Full Disk Access", "Toggle Kestavon ON"]

    title: "One Permission. No More Popups."
    width: 716
    initialFocus: openSettings
    visible: onboarding !== null && onboarding.isPresented
    onAboutToHide: onboarding.dismiss()

    contentItem: Item {
        implicitHeight: 493
        Keys.onReturnPressed: openSettings.clicked()
        Keys.onEnterPressed: openSettings.clicked()

        Rectangle {
            x: 30
            y: 29
            width: 60
            height: 60
            radius: 30
            color: Theme.tint(Theme.graphic("blue"), 0.13)
            SymbolIcon {
                anchors.centerIn: parent
                name: "lock.open.fill"
                size: 30
                color: Theme.graphic("blue")
            }
        }
        AppText {
            x: 106
            y: 26
            text: sheet.title
            role: AppText.Role.SheetTitle
        }
        AppText {
            x: 106
            y: 55
            text: "macOS is asking for folder access one-by-one because Kestavon\ndoesn't have Full Disk Access yet."
            color: Theme.text2
        }
        Hairline {
            y: 112
            width: parent.width
        }
        Repeater {
            model: sheet.steps
            Item {
                id: step
                required property var modelData
                required property int index
                x: 30
                y: 132 + 80 * index
                width: parent.width - 60
                SymbolTile {
                    y: 1
                    symbol: step.modelData.symbol
                    colorName: step.modelData.color
                    size: 44
                    symbolSize: 24
                }
                AppText {
                    x: 60
                    text: step.modelData.title
                    weight: 700
                }
                AppText {
                    x: 60
                    y: 20
                    width: parent.width - 60
                    text: step.modelData.body
                    color: Theme.text2
                    wrapMode: Text.Wrap
                }
            }
        }
        Hairline {
            y: 369
            width: parent.width
        }
        Row {
            x: 30
            y: 388
            spacing: 9
            Repeater {
                model: sheet.path
                Row {
                    id: instruction
                    required property string modelData
                    required property int index
                    spacing: 8
                    Rectangle {
                        width: 22
                        height: 22
                        radius: 11
                        color: Theme.tint(Theme.graphic("blue"), 0.15)
                        AppText {
                            anchors.centerIn: parent
                            text: instruction.index + 1
                            role: AppText.Role.Micro
                            weight: 700
                            color: Theme.ink("blue")
                        }
                    }
                    AppText {
                        anchors.verticalCenter: parent.verticalCenter
                        text: instruction.modelData
                        role: AppText.Role.Caption
                        weight: 500
                    }
                    SymbolIcon {
                        anchors.verticalCenter: parent.verticalCenter
                        visible: instruction.index < sheet.path.length - 1
                        name: "chevron.right"
                        size: 14
                        color: Theme.text3
                    }
                }
            }
        }
        Hairline {
            y: 428
            width: parent.width
        }
        Row {
            anchors.right: parent.right
            anchors.rightMargin: 24
            y: 445
            spacing: 8
            AppButton {
                objectName: "skip"
                label: "Skip for Now"
                kind: AppButton.Kind.Plain
                onClicked: sheet.onboarding.skip()
            }
            AppButton {
                id: openSettings
                objectName: "openSystemSettings"
                label: "Open System Settings"
                symbol: "arrow.up.right.square"
                kind: AppButton.Kind.Prominent
                onClicked: sheet.onboarding.openSystemSettings()
            }
        }
    }
}
