import QtQuick
import Kestavon.Ui

/// An application's icon, or a symbol where it has none. Decorative: its name stands beside it.
Image {
    /// As the states give it; empty for none.
    required property string icon
    required property int size

    width: size
    height: size
    fillMode: Image.PreserveAspectFit
    asynchronous: true
    // In pixels of the screen, so that the icon is as sharp there as at scale 1.
    sourceSize {
        width: Math.round(size * Screen.devicePixelRatio)
        height: Math.round(size * Screen.devicePixelRatio)
    }
    source: "image://appicon/" + Theme.graphic("secondary").toString().substring(1) + "/" + icon
    Accessible.ignored: true
}
