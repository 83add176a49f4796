import QtQuick
import Kestavon.Ui

/// Text that is cut when it does not fit, and then shows itself whole under the pointer.
AppText {
    id: label

    elide: Text.ElideMiddle

    HoverHandler {
        id: hover
        enabled: label.truncated
    }
    Loader {
        active: hover.hovered && label.truncated
        sourceComponent: AppToolTip {
            parent: label
            text: label.text
            visible: true
        }
    }
}
