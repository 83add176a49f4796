import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// The choice of one folder, where the desktop has no dialog of its own for it.
Sheet {
    id: sheet

    required property UiStates ui
    readonly property FolderChooser chooser: ui.shell.folderChooser
    readonly property WindowFolderPicker picker: ui.shell.folderPicker
    /// A folder was chosen: closing is no refusal.
    property bool chosen: false

    function openAt(folder: url) {
        chosen = false;
        chooser.begin(folder);
        open();
    }
    function take() {
        chooser.take(field.text);
    }

    component Place: T.AbstractButton {
        id: place
        required property int index
        required property string modelData
        readonly property bool here: {
            sheet.chooser.path;
            return sheet.chooser.isAtPlace(index);
        }
        width: 164
        height: 32
        hoverEnabled: true
        focusPolicy: Qt.TabFocus
        Keys.onReturnPressed: clicked()
        Keys.onEnterPressed: clicked()
        Accessible.role: Accessible.Button
        Accessible.name: modelData
        onClicked: sheet.chooser.goToPlace(index)
        background: Rectangle {
            radius: 8
            color: place.here ? Theme.selectedRow : "transparent"
            HoverFill {
                anchors.fill: parent
                hovered: place.hovered && !place.here
                pressed: place.pressed
            }
            FocusRing {
                visible: place.visualFocus
                gap: -2
            }
        }
        contentItem: Item {
            SymbolIcon {
                x: 10
                anchors.verticalCenter: parent.verticalCenter
                name: sheet.chooser.placeSymbol(place.index)
                color: place.here ? Theme.accentInk : Theme.text2
            }
            ElidedText {
                x: 34
                width: parent.width - x - 8
                anchors.verticalCenter: parent.verticalCenter
                text: place.modelData
                weight: place.here ? 600 : 500
                Accessible.ignored: true
            }
        }
    }
    component FolderRow: VirtualListRow {
        id: line
        readonly property string name: {
            sheet.chooser.revision;
            return sheet.chooser.nameText(row);
        }
        path: {
            sheet.chooser.revision;
            return sheet.chooser.folderAt(row);
        }
        label: name
        Rectangle {
            anchors.fill: parent
            anchors.leftMargin: 8
            anchors.rightMargin: 8
            anchors.topMargin: 1
            anchors.bottomMargin: 2
            radius: 7
            visible: line.current || hover.hovered
            color: line.current ? Theme.selectedRow : Theme.hover
        }
        SymbolIcon {
            x: 18
            anchors.verticalCenter: parent.verticalCenter
            name: "folder.fill"
            size: 18
            color: Theme.graphic("blue")
        }
        ElidedText {
            x: 46
            width: Math.min(implicitWidth, parent.width - x - 24)
            anchors.verticalCenter: parent.verticalCenter
            text: line.name
            weight: 500
            Accessible.ignored: true
        }
        FocusRing {
            anchors.fill: parent
            anchors.margins: 0
            anchors.leftMargin: 8
            anchors.rightMargin: 8
            anchors.topMargin: 1
            anchors.bottomMargin: 2
            visible: line.ringShown
            radius: 7
        }
        HoverHandler {
            id: hover
        }
        TapHandler {
            onTapped: line.list.choose(line.row)
            onDoubleTapped: sheet.chooser.enter(line.row)
        }
    }

    title: "Choose Folder"
    width: 720
    height: 560
    initialFocus: rows
    onAboutToHide: {
        if (!chosen)
            picker.cancel();
    }

    Connections {
        target: sheet.chooser
        function onChosen(folder) {
            sheet.chosen = true;
            sheet.picker.acceptPath(folder);
            sheet.close();
        }
        function onFolderChanged() {
            rows.currentRow = -1;
            rows.scrollTo(0);
            field.text = sheet.chooser.path;
            typed.text = "";
        }
        function onRowChanged() {
            rows.currentRow = sheet.chooser.row;
        }
    }

    contentItem: Item {
        Keys.onPressed: event => {
            const control = event.modifiers & Qt.ControlModifier;
            if (event.key === Qt.Key_L && control) {
                field.forceActiveFocus(Qt.ShortcutFocusReason);
                field.selectAll();
            } else if (event.key === Qt.Key_H && control) {
                sheet.chooser.showsHidden = !sheet.chooser.showsHidden;
            } else if (event.key === Qt.Key_Up && event.modifiers & Qt.AltModifier) {
                sheet.chooser.goUp();
            } else if (event.key === Qt.Key_Backspace && !field.activeFocus) {
                sheet.chooser.goUp();
            } else if (rows.activeFocus && event.text !== "" && !control && !(event.modifiers & Qt.AltModifier)
                    && event.text.charCodeAt(0) > 32) {
                typed.find(event.text);
            } else {
                return;
            }
            event.accepted = true;
        }
        // What is typed in the list within a second: the beginning of a name.
        Timer {
            id: typed
            property string text
            function find(more: string) {
                // The row that is marked may still fit; a first letter goes on to the next row.
                const from = text === "" ? rows.currentRow + 1 : rows.currentRow;
                text += more;
                restart();
                const found = sheet.chooser.rowBeginningWith(text, from);
                if (found < 0)
                    return;
                rows.takeFocus(Qt.TabFocusReason);
                rows.currentRow = found;
                rows.ensureVisible(found);
            }
            interval: 1000
            onTriggered: text = ""
        }

        AppText {
            x: 24
            y: 20
            text: sheet.title
            role: AppText.Role.EmptyTitle
            Accessible.role: Accessible.Heading
        }
        AppCheckBox {
            objectName: "showHiddenFolders"
            anchors.right: parent.right
            anchors.rightMargin: 24
            y: 19
            label: "Hidden folders"
            checked: sheet.chooser.showsHidden
            nextCheckState: () => checkState
            onClicked: sheet.chooser.showsHidden = !sheet.chooser.showsHidden
        }
        AppButton {
            id: up
            objectName: "folderUp"
            x: 24
            y: 58
            symbol: "arrow.up"
            hint: "Alt+↑"
            enabled: sheet.chooser.canGoUp
            Accessible.name: "Up"
            onClicked: sheet.chooser.goUp()
        }
        AppTextField {
            id: field
            objectName: "folderPath"
            clears: false
            anchors.left: up.right
            anchors.leftMargin: 8
            anchors.right: parent.right
            anchors.rightMargin: 24
            y: 58
            Accessible.name: "Folder"
            onAccepted: sheet.chooser.go(text)
            onTextEdited: rows.currentRow = -1 // "Open" is about what is typed
        }
        Hairline {
            y: 106
            width: parent.width
        }
        PageFlickable {
            y: 107
            width: 183
            height: parent.height - y - 65
            contentHeight: places.height + 20
            Column {
                id: places
                x: 10
                y: 10
                spacing: 2
                Repeater {
                    model: sheet.chooser.placeTitles
                    Place {}
                }
            }
        }
        Rectangle {
            x: 183
            y: 107
            width: 1
            height: parent.height - y - 65
            color: Theme.hairline
        }
        VirtualList {
            id: rows
            objectName: "folderRows"
            x: 184
            y: 107
            width: parent.width - x
            height: parent.height - y - 65
            rowHeight: 36
            name: "Folders"
            pathActions: sheet.ui.pathActions
            mayHaveNoRow: true
            // In here, not in the desktop's file manager.
            Keys.onReturnPressed: sheet.chooser.enter(currentRow)
            Keys.onEnterPressed: sheet.chooser.enter(currentRow)
            currentRow: -1
            count: sheet.chooser.rowCount
            onCurrentRowChanged: {
                sheet.chooser.row = currentRow;
                if (currentRow >= 0)
                    field.text = sheet.chooser.path;
            }
            delegate: FolderRow {
                list: rows
                divided: false
            }
            FocusRing {
                anchors.fill: parent
                anchors.margins: 4
                radius: 7
                visible: rows.visualFocus && rows.currentRow < 0
            }
        }
        Column {
            x: rows.x + 30
            y: sheet.chooser.rowCount > 0 ? rows.y + rows.height - height - 12
                                          : rows.y + Math.round((rows.height - height) / 2)
            width: rows.width - 60
            spacing: 10
            visible: sheet.chooser.busy || sheet.chooser.message !== "" || sheet.chooser.rowCount === 0
            Spinner {
                anchors.horizontalCenter: parent.horizontalCenter
                visible: sheet.chooser.busy
                size: 20
            }
            Rectangle {
                width: parent.width
                height: said.height + 24
                radius: 8
                visible: !sheet.chooser.busy
                color: sheet.chooser.message !== "" ? Theme.elevated : "transparent"
                border.width: sheet.chooser.message !== "" ? 1 : 0
                border.color: Theme.border
                AppText {
                    id: said
                    objectName: "folderMessage"
                    x: 12
                    y: 12
                    width: parent.width - 24
                    text: sheet.chooser.message !== "" ? sheet.chooser.message : "No folders in here."
                    color: sheet.chooser.message !== "" ? Theme.text : Theme.text2
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.StatusBar
                }
            }
        }
        Rectangle {
            y: parent.height - 65
            width: parent.width
            height: 1
            color: Theme.border
        }
        ElidedText {
            objectName: "chosenName"
            x: 24
            y: parent.height - 49
            width: buttons.x - x - 16
            text: field.text === sheet.chooser.path ? sheet.chooser.choiceName : field.text
            weight: 600
        }
        ElidedText {
            objectName: "chosenPath"
            x: 24
            y: parent.height - 31
            width: buttons.x - x - 16
            text: field.text === sheet.chooser.path ? sheet.chooser.choicePath : "As typed"
            role: AppText.Role.Caption
            color: Theme.text2
        }
        Row {
            id: buttons
            anchors.right: parent.right
            anchors.rightMargin: 24
            y: parent.height - 48
            spacing: 8
            AppButton {
                objectName: "cancelFolder"
                label: "Cancel"
                onClicked: sheet.close()
            }
            AppButton {
                objectName: "openFolder"
                label: "Open"
                kind: AppButton.Kind.Prominent
                enabled: sheet.chooser.canTake || field.text !== ""
                onClicked: sheet.take()
            }
        }
    }
}
