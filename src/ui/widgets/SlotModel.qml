import QtQuick

/// The model of a Repeater whose items show whatever is in sight: at least `needed` of them, made
/// once the screen has found its size, and kept. A number as the model would make all of them anew
/// with every pixel that counts while a window is resized.
ListModel {
    id: model

    property int needed: 0
    property bool begun: false

    function grow() {
        // At once: every slot finds its row anew when their number changes.
        if (count < needed)
            append(Array.from({ length: needed - count }, () => ({})));
    }
    onNeededChanged: {
        if (begun)
            grow();
    }
    Component.onCompleted: {
        begun = true;
        grow();
    }
}
