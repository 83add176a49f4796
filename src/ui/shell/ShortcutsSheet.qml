import QtQuick
import Kestavon.Ui

/// The keys that the program knows, in groups.
Sheet {
    id: sheet

    readonly property var columns: [
        [
            {
                title: "Everywhere",
                keys: [
                    { keys: ["F5", "Ctrl+R"], does: "Scan the chosen folder" },
                    { keys: ["Esc"], does: "Stop what is going on" },
                    { keys: ["Ctrl+."], does: "Stop moving, restoring or deleting" },
                    { keys: ["Ctrl+Z"], does: "Undo the last move" },
                    { keys: ["Ctrl+O"], does: "Choose a folder" },
                    { keys: ["Ctrl+F"], does: "Search in the list" },
                    { keys: ["Ctrl+,"], does: "Settings" },
                    { keys: ["F1", "Ctrl+?"], does: "This list" },
                    { keys: ["Ctrl+Q"], does: "Quit" }
                ]
            },
            {
                title: "Sections",
                keys: [
                    { keys: ["Alt+1", "Alt+0"], joint: "to", does: "One of the first ten" },
                    { keys: ["Alt+Shift+1", "Alt+Shift+4"], joint: "to", does: "One of the others" },
                    { keys: ["Ctrl+PgUp", "Ctrl+PgDn"], does: "The one before, the one after" }
                ]
            }
        ],
        [
            {
                title: "Lists",
                keys: [
                    { keys: ["↑", "↓"], does: "Go from row to row" },
                    { keys: ["PgUp", "PgDn"], does: "Go a page" },
                    { keys: ["Home", "End"], does: "Go to the first or the last row" },
                    { keys: ["Space"], does: "Select or tick the row" },
                    { keys: ["Shift+↑", "Shift+↓"], does: "Select several rows" },
                    { keys: ["Ctrl+A"], does: "Select or tick all" },
                    { keys: ["Esc"], does: "Select nothing" },
                    { keys: ["Ctrl+C"], does: "Copy the path" },
                    { keys: ["Menu", "Shift+F10"], does: "More to do with the path" }
                ]
            },
            {
                title: "Files",
                keys: [
                    { keys: ["Enter"], does: "Open" },
                    { keys: ["Del"], does: "Move to Trash, after a question" },
                    { keys: ["Shift+Del"], does: "Delete Forever, after a question" }
                ]
            }
        ]
    ]

    title: "Keyboard Shortcuts"
    width: 960
    initialFocus: close

    contentItem: Item {
        implicitHeight: heading.height + groups.height + 116

        AppText {
            id: heading
            x: 30
            y: 26
            text: sheet.title
            role: AppText.Role.SheetTitle
            Accessible.role: Accessible.Heading
        }
        Row {
            id: groups
            x: 30
            anchors.top: heading.bottom
            anchors.topMargin: 14
            spacing: 40
            Repeater {
                model: sheet.columns
                Column {
                    id: column
                    required property var modelData
                    width: 430
                    spacing: 18
                    Repeater {
                        model: column.modelData
                        Column {
                            id: group
                            required property var modelData
                            width: parent.width
                            AppText {
                                height: 30
                                text: group.modelData.title
                                role: AppText.Role.SectionTitle
                                Accessible.role: Accessible.Heading
                            }
                            Repeater {
                                model: group.modelData.keys
                                Item {
                                    id: line
                                    required property var modelData
                                    width: parent.width
                                    height: 32
                                    Accessible.role: Accessible.StaticText
                                    Accessible.name: modelData.keys.join(" " + joint + " ") + ": " + modelData.does

                                    readonly property string joint: modelData.joint ?? "or"

                                    Row {
                                        objectName: "shortcutKeys"
                                        anchors.verticalCenter: parent.verticalCenter
                                        spacing: 6
                                        Repeater {
                                            model: line.modelData.keys
                                            Row {
                                                id: key
                                                required property string modelData
                                                required property int index
                                                spacing: 6
                                                AppText {
                                                    anchors.verticalCenter: parent.verticalCenter
                                                    visible: key.index > 0
                                                    text: line.joint
                                                    role: AppText.Role.Caption
                                                    color: Theme.text3
                                                    Accessible.ignored: true
                                                }
                                                Rectangle {
                                                    width: Math.max(26, cap.implicitWidth + 14)
                                                    height: 24
                                                    radius: 6
                                                    color: Theme.sunken
                                                    border.width: 1
                                                    border.color: Theme.border
                                                    AppText {
                                                        id: cap
                                                        anchors.centerIn: parent
                                                        text: key.modelData
                                                        role: AppText.Role.Caption
                                                        weight: 500
                                                        Accessible.ignored: true
                                                    }
                                                }
                                            }
                                        }
                                    }
                                    AppText {
                                        objectName: "shortcutText"
                                        x: 200
                                        width: parent.width - x
                                        anchors.verticalCenter: parent.verticalCenter
                                        text: line.modelData.does
                                        color: Theme.text2
                                        elide: Text.ElideRight
                                        Accessible.ignored: true
                                    }
                                }
                            }
                        }
                    }
                }
            }
        }
        AppButton {
            id: close
            objectName: "closeShortcuts"
            anchors.right: parent.right
            anchors.rightMargin: 24
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 20
            label: "Close"
            onClicked: sheet.close()
        }
    }
}
