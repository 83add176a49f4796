import QtQuick
import Kestavon.Ui

/// Makes the system reclaim memory, and says for a while what that brought.
AppButton {
    id: button

    required property PerformanceState performance
    property bool showResult: false
    /// How long the result is shown, in milliseconds.
    property int resultTime: 6000

    label: performance.optimizing ? "Optimizing…" : showResult ? performance.freedText : "Free Up RAM"
    symbol: showResult && !performance.optimizing ? "checkmark.circle.fill" : "memorychip"
    busy: performance.optimizing
    kind: showResult || performance.optimizing ? AppButton.Kind.Bordered : AppButton.Kind.Prominent
    inkColor: solid ? Theme.onSolid : showResult ? Theme.ink("green") : Theme.text
    symbolColor: solid ? Theme.onSolid : showResult ? Theme.ink("green") : Theme.text2
    onClicked: {
        showResult = false;
        result.stop();
        performance.optimize();
    }

    Timer {
        id: result
        objectName: "resultTimer"
        interval: button.resultTime
        onTriggered: button.showResult = false
    }
    Connections {
        target: button.performance
        function onOptimizingChanged() {
            // What an earlier run brought is told no more, and its time counts no more.
            button.showResult = !button.performance.optimizing;
            if (button.showResult)
                result.restart();
            else
                result.stop();
        }
    }
}
