import QtQuick
import Kestavon.Ui

/// How far the search has come, with the button that stops it; or why it failed, with the one that
/// starts it again.
Card {
    id: card

    required property DuplicatesState duplicates
    /// One of its buttons has the keyboard.
    readonly property bool hasKeyboard: stop.activeFocus || again.activeFocus

    /// Puts the keyboard on the button that is to be seen.
    function takeFocus() {
        (duplicates.failed ? again : stop).forceActiveFocus(Qt.OtherFocusReason);
    }

    implicitHeight: Math.max(66, phase.implicitHeight + 34)

    Connections {
        target: card.duplicates
        function onChanged() {
            if (card.hasKeyboard && (card.duplicates.failed ? stop : again).activeFocus)
                card.takeFocus();
        }
    }
    Spinner {
        x: 20
        anchors.verticalCenter: parent.verticalCenter
        visible: card.duplicates.analyzing
    }
    SymbolIcon {
        x: 18
        anchors.verticalCenter: parent.verticalCenter
        visible: card.duplicates.failed
        name: "exclamationmark.triangle.fill"
        size: 18
        color: Theme.graphic("red")
    }
    AppText {
        id: phase
        Accessible.ignored: true
        objectName: "analysisPhase"
        x: 49
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, (card.duplicates.failed ? again.x : stop.x) - x - 16)
        text: card.duplicates.phaseText
        weight: 500
        wrapMode: Text.Wrap
    }
    AppText {
        id: progress
        objectName: "analysisProgress"
        anchors.left: phase.right
        anchors.leftMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        text: card.duplicates.progressText
        color: Theme.text2
        Accessible.ignored: text === ""
        Accessible.name: spoken.text
        SpokenText {
            id: spoken
            source: progress.text
        }
    }
    AppButton {
        id: stop
        objectName: "stopAnalysis"
        anchors.right: parent.right
        anchors.rightMargin: 19
        anchors.verticalCenter: parent.verticalCenter
        visible: card.duplicates.analyzing
        label: "Stop"
        kind: AppButton.Kind.RedBordered
        onClicked: card.duplicates.stop()
    }
    AppButton {
        id: again
        objectName: "analyzeAgain"
        anchors.right: parent.right
        anchors.rightMargin: 19
        anchors.verticalCenter: parent.verticalCenter
        visible: card.duplicates.failed
        label: "Analyze Duplicates"
        kind: AppButton.Kind.Prominent
        enabled: card.duplicates.canAnalyze
        onClicked: card.duplicates.analyze()
    }
}
