import QtQuick

/// A text for screen readers that follows one which changes many times a second: at most every five
/// seconds, so that the reader can finish its sentence.
QtObject {
    id: spoken

    required property string source
    property string text

    property Timer pause: Timer {
        interval: 5000
        onTriggered: spoken.follow()
    }
    function follow() {
        if (text === source || pause.running)
            return;
        text = source;
        pause.start();
    }
    onSourceChanged: follow()
    Component.onCompleted: follow()
}
