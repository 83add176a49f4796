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
    /// The share that is drawn. It grows, and not the width, so that the fill keeps to a track that
    /// is made narrower.
    property real shownFill: fill
    Behavior on shownFill {
        NumberAnimation { duration: Theme.growTime; easing.type: Easing.InOutQuad }
    }

    implicitHeight: 14
    radius: height / 2
    color: Theme.track

    Item {
        id: filled
        width: track.width * Math.min(1, track.shownFill)
        height: parent.height
        visible: width >= height
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
    // Narrower than the bar is high the caps would not meet: the track's own cap, as far as it goes.
    Item {
        width: filled.width
        height: parent.height
        visible: !filled.visible && width > 0
        clip: true
        Rectangle {
            width: height
            height: parent.height
            radius: height / 2
            color: track.pale
        }
    }
}
