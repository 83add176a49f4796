import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// What the program promises and what it is. Also the content of the Settings window.
SectionScreen {
    id: view

    readonly property SettingsState settings: ui.settings
    /// A link of this view was opened last, not one of the same view in another window.
    property bool opensLink: false

    component Line: Item {
        id: row
        property bool last: false
        width: parent.width
        height: 46
        Hairline {
            visible: !row.last
            anchors.bottom: parent.bottom
            width: parent.width
        }
    }
    component Promise: Line {
        id: promise
        required property string symbol
        required property string text
        SymbolIcon {
            y: 13
            name: promise.symbol
            size: 20
            color: Theme.graphic("green")
        }
        AppText {
            x: 32
            y: 13.5
            text: promise.text
        }
        SymbolIcon {
            anchors.right: parent.right
            y: 13
            name: "checkmark.circle.fill"
            size: 18
            color: Theme.graphic("green")
        }
    }
    component Link: T.AbstractButton {
        id: link
        property string symbol
        property string label
        property string hint
        property bool last: false
        width: parent.width
        height: 44
        hoverEnabled: true
        focusPolicy: Qt.StrongFocus
        Keys.onReturnPressed: clicked()
        Keys.onEnterPressed: clicked()
        Accessible.role: Accessible.Button
        Accessible.name: label
        Accessible.description: hint

        background: Item {
            HoverFill {
                id: fill
                x: -12
                y: 3
                width: parent.width + 24
                height: parent.height - 7
                radius: 7
                hovered: link.hovered
                pressed: link.pressed
            }
            FocusRing {
                anchors.fill: fill
                anchors.margins: 0
                visible: link.visualFocus
                controlRadius: 7
                gap: -2
            }
            Hairline {
                visible: !link.last
                anchors.bottom: parent.bottom
                width: parent.width
            }
        }
        contentItem: Item {
            SymbolIcon {
                y: 13
                name: link.symbol
                size: 18
                color: Theme.accentInk
            }
            AppText {
                x: 30
                y: 12.5
                text: link.label
                weight: 500
                color: Theme.accentInk
                Accessible.ignored: true
            }
        }
        Loader {
            active: link.hint !== "" && link.hovered
            sourceComponent: AppToolTip {
                parent: link
                text: link.hint
                visible: true
            }
        }
    }

    PageFlickable {
        anchors.fill: parent
        contentHeight: column.y + column.height + 28

        Column {
            id: column
            x: Math.round((parent.width - width) / 2)
            y: 27
            width: 640
            AppText {
                x: 2
                text: "Privacy"
                role: AppText.Role.SectionTitle
                Accessible.role: Accessible.Heading
            }
            Item { width: 1; height: 9 }
            Card {
                width: parent.width
                height: 94
                Column {
                    x: 19
                    y: 1
                    width: parent.width - 38
                    Promise {
                        symbol: "lock.shield.fill"
                        text: "Scans stay local — no telemetry"
                    }
                    Promise {
                        symbol: "antenna.radiowaves.left.and.right.slash"
                        text: "No usage analytics collected"
                        last: true
                    }
                }
            }
            Item { width: 1; height: 23 }
            AppText {
                x: 2
                text: "About"
                role: AppText.Role.SectionTitle
                Accessible.role: Accessible.Heading
            }
            Item { width: 1; height: 9 }
            Card {
                width: parent.width
                height: 240
                Column {
                    x: 19
                    y: 1
                    width: parent.width - 38
                    Line {
                        height: 60
                        SymbolIcon {
                            y: 16
                            name: "app.badge.checkmark"
                            size: 28
                            color: Theme.graphic("purple")
                        }
                        AppText {
                            x: 40
                            y: 12
                            text: "Kestavon"
                            weight: 700
                        }
                        AppText {
                            x: 40
                            y: 30
                            text: view.settings.version
                            role: AppText.Role.Caption
                            color: Theme.text2
                        }
                    }
                    Line {
                        AppText {
                            id: rootLabel
                            y: 13.5
                            text: "Scanned root"
                        }
                        ElidedText {
                            anchors.right: parent.right
                            y: 13.5
                            width: Math.min(implicitWidth, parent.width - rootLabel.width - 20)
                            text: view.settings.scannedRoot
                            color: Theme.text2
                            Accessible.focusable: activeFocusOnTab
                            PathMenuArea {
                                tabStop: true
                                actions: view.ui.pathActions
                                path: view.settings.scannedRootPath
                            }
                        }
                    }
                    Link {
                        objectName: "checkForUpdates"
                        symbol: "arrow.triangle.2.circlepath"
                        label: "Check for Updates"
                        onClicked: {
                            updates.message = view.settings.checkForUpdates();
                            updates.open();
                        }
                    }
                    Link {
                        objectName: "visitWebsite"
                        symbol: "safari"
                        label: "Visit Website →"
                        onClicked: {
                            view.opensLink = true;
                            view.settings.visitWebsite();
                        }
                    }
                    Link {
                        objectName: "contactSupport"
                        symbol: "envelope"
                        label: "Contact Support"
                        hint: view.settings.supportAddress
                        last: true
                        onClicked: {
                            view.opensLink = true;
                            view.settings.contactSupport();
                        }
                    }
                }
            }
        }
    }
    AlertDialog {
        id: updates
        title: "Check for Updates"
    }
    AlertDialog {
        id: linkError
        title: "Error"
    }
    Connections {
        target: view.settings
        enabled: view.opensLink
        function onLinkFailed(reason) {
            view.opensLink = false;
            linkError.message = reason;
            linkError.open();
        }
    }
}
