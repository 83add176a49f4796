import QtQuick
import Kestavon.Ui

/// Work is going on.
Item {
    id: spinner

    property int size: 16
    property color color: Theme.accent

    implicitWidth: size
    implicitHeight: size
    Accessible.role: Accessible.Animation
    Accessible.name: "Busy"

    SymbolIcon {
        name: "spinner"
        size: spinner.size
        color: spinner.color
        rotation: clock.phase * 360
        smooth: true
        antialiasing: true
    }
    SteppedClock {
        id: clock
        period: Theme.reducedMotion ? 1800 : 900
        step: Theme.reducedMotion ? 225 : 66
    }
}
