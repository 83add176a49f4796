import QtQuick
import Kestavon.Ui

/// A screen's title and the line below it; the controls given as children stand at the trailing
/// side, in line with the second one.
Item {
    id: header

    required property string title
    property string subtitle
    /// The subtitle tells of work that is going on.
    property bool busy: false
    property color subtitleColor: Theme.text2
    property int subtitleWeight: 400
    /// Screen readers say it whenever it changes.
    property bool subtitleIsStatus: false
    /// A FilePath, where the subtitle is a path.
    property var subtitlePath
    property PathActions pathActions
    default property alias controls: row.data

    implicitHeight: 54

    AppText {
        id: heading
        width: Math.min(implicitWidth, row.x - 12)
        text: header.title
        role: AppText.Role.PageTitle
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
    }
    Loader {
        anchors.top: heading.bottom
        anchors.topMargin: 5
        active: header.busy
        sourceComponent: Spinner {
            size: 13
            Accessible.ignored: true
        }
    }
    ElidedText {
        x: header.busy ? 20 : 0
        anchors.top: heading.bottom
        anchors.topMargin: 2
        width: Math.min(implicitWidth, row.x - 12 - x)
        text: header.subtitle
        weight: header.subtitleWeight
        color: header.subtitleColor
        Accessible.role: header.subtitleIsStatus ? Accessible.StatusBar : Accessible.StaticText
        Accessible.focusable: activeFocusOnTab
        PathMenuArea {
            tabStop: true
            actions: header.pathActions
            path: header.subtitlePath
        }
    }
    Row {
        id: row
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        spacing: 8
    }
}
