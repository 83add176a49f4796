import QtQuick
import Kestavon.Ui

/// A rounded track with a fill that runs from a paler to the full tone.
///
/// The fill is two flat caps with a square gradient between them: the software renderer does not
/// smooth the edge of a rounded rectangle that has a gradient.
Rectangle {
    id: track

    /// Filled share, 0 to 1.
    required property real fill
    required property color tone

    readonly property color pale: Theme.over(Theme.surface, tone, 0.72)

    implicitHeight: 14
    radius: height / 2
    color: Theme.track

    Item {
        id: filled
        // Never shorter than it is high, or the caps would not meet.
        width: track.fill > 0 ? Math.max(height, track.width * track.fill) : 0
        height: parent.height
        visible: width >= height
        Behavior on width {
            NumberAnimation { duration: Theme.growTime; easing.type: Easing.InOutQuad }
        }
        Rectangle {
            width: height
            height: parent.height
            radius: height / 2
            color: track.pale
        }
        Rectangle {
            x: parent.width - width
            width: height
            height: parent.height
            radius: height / 2
            color: track.tone
        }
        Rectangle {
            x: height / 2
            width: parent.width - height
            height: parent.height
            gradient: Gradient {
                orientation: Gradient.Horizontal
                GradientStop { position: 0; color: track.pale }
                GradientStop { position: 1; color: track.tone }
            }
        }
    }
}
