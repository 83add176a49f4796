import QtQuick
import Kestavon.Ui

/// The status menu beside the tray's icon.
Window {
    id: window

    property UiStates ui: null

    /// Opens at this point of the desktop.
    function openNear(pointX: int, pointY: int) {
        ui.status.refresh();
        const place = ui.status.menuPlace(Qt.point(pointX, pointY), Qt.size(width, height));
        x = place.x;
        y = place.y;
        show();
        requestActivate();
    }

    flags: Qt.Popup | Qt.FramelessWindowHint
    width: 220
    height: content.implicitHeight + 2
    color: Theme.elevated
    onActiveChanged: {
        if (!active)
            close();
    }

    Rectangle {
        anchors.fill: parent
        color: "transparent"
        border.width: 1
        border.color: Theme.border
    }
    Loader {
        id: content
        x: 1
        y: 1
        width: parent.width - 2
        focus: true
        active: window.ui !== null
        sourceComponent: MenuBarStatusView {
            ui: window.ui
            focus: true
            onDone: window.close()
            Keys.onEscapePressed: window.close()
        }
    }
}
