import QtQuick

/// Drives an endless movement at 15 steps a second, which the eye takes for smooth and an idle
/// machine hardly notices. Stands still while it, or its window, cannot be seen.
Item {
    id: clock

    property bool running: true
    /// Milliseconds of one pass.
    property int period: 1000
    property int step: 66
    /// 0 up to 1 over one pass, then again.
    property real phase: 0

    Timer {
        running: clock.running && clock.visible && clock.Window.window !== null
            && clock.Window.visibility !== Window.Hidden && clock.Window.visibility !== Window.Minimized
        interval: clock.step
        repeat: true
        onTriggered: clock.phase = (clock.phase + clock.step / clock.period) % 1
    }
}
