import QtQuick
import Kestavon.Ui

/// A dot whose ring breathes: something runs. The ring stands still where nothing may move.
Rectangle {
    id: halo

    /// 0 (ring small and strong) to 1 (wide and faint), and back over one pass of the clock.
    readonly property real breath: Theme.reducedMotion ? 0.5 : (1 - Math.cos(2 * Math.PI * clock.phase)) / 2

    implicitWidth: 36
    implicitHeight: 36
    radius: 18
    color: Theme.tint(Theme.accent, 0.12)

    Rectangle {
        anchors.centerIn: parent
        width: 20
        height: 20
        radius: 10
        scale: 0.85 + 0.3 * halo.breath
        opacity: 0.9 - 0.5 * halo.breath
        color: Theme.tint(Theme.accent, 0.3)
    }
    Rectangle {
        anchors.centerIn: parent
        width: 10
        height: 10
        radius: 5
        color: Theme.accent
    }
    SteppedClock {
        id: clock
        running: !Theme.reducedMotion
        period: 1400
    }
}
