import QtQuick
import Kestavon.Ui

/// What is being done to files when that takes long, how far it is, and a way to stop it.
FootBar {
    id: bar

    required property WorkState work

    /// Of the whole, in percent; for screen readers.
    readonly property real value: Math.round(Math.max(work.share, 0) * 100)
    readonly property real minimumValue: 0
    readonly property real maximumValue: 100

    shown: work.shown
    text: work.text
    textName: "workText"
    Accessible.role: Accessible.ProgressBar
    Accessible.name: work.text
    Accessible.description: work.detail
    symbol: Spinner {
        size: 18
        Accessible.ignored: true
    }
    trailing: [
        AppText {
            objectName: "workDetail"
            anchors.verticalCenter: parent.verticalCenter
            text: bar.work.detail
            role: AppText.Role.Caption
            color: Theme.text2
            Accessible.ignored: true
        },
        Item {
            width: visible ? 168 : 0
            height: parent.height
            visible: bar.work.share >= 0
            Rectangle {
                x: 4
                width: 160
                height: 6
                anchors.verticalCenter: parent.verticalCenter
                radius: 3
                color: Theme.track
                Rectangle {
                    width: Math.max(bar.work.share > 0 ? height : 0, parent.width * bar.work.share)
                    height: parent.height
                    radius: 3
                    color: Theme.accent
                }
            }
        },
        AppButton {
            id: stop
            objectName: "stopWork"
            anchors.verticalCenter: parent.verticalCenter
            small: true
            label: bar.work.canStop ? "Stop" : "Stopping…"
            hint: "Ctrl+."
            enabled: bar.work.canStop
            Accessible.name: bar.work.canStop ? "Stop " + bar.work.text : label
            onClicked: bar.work.stop()
            Keys.onEscapePressed: bar.work.stop()
        }
    ]
}
