import QtQuick
import Kestavon.Ui

/// One symbol in one colour. Decorative: it always stands beside a text or inside a named control.
Image {
    required property string name
    property color color: Theme.text2
    property int size: 16

    width: size
    height: size
    // In pixels of the screen, so that the drawing is as sharp there as at scale 1.
    sourceSize {
        width: Math.round(size * Screen.devicePixelRatio)
        height: Math.round(size * Screen.devicePixelRatio)
    }
    source: name === "" ? "" : "image://symbol/" + name + "/" + color.toString().substring(1)
    Accessible.ignored: true
}
