import QtQuick
import Kestavon.Ui

/// The heading of a group, or one of its files.
VirtualListRow {
    id: line

    required property DuplicateRows rows

    /// Asks the rows again whenever they have changed.
    readonly property var shown: {
        rows.revision;
        return {
            heading: rows.isHeading(row),
            name: rows.nameText(row),
            copies: rows.copiesText(row),
            saving: rows.savingText(row),
            pathText: rows.pathText(row),
            path: rows.filePath(row),
            date: rows.dateText(row),
            kept: rows.isKept(row)
        };
    }

    path: shown.path
    label: (shown.heading ? [shown.name, shown.copies, shown.saving]
        : [shown.name, shown.pathText, shown.date].concat(shown.kept ? ["Kept"] : [])).join(", ")
    divided: false
    height: shown.heading ? rows.cardGap + rows.headingHeight : rows.fileHeight

    // Headings and files share their texts: a row is made in half the time.
    Item {
        anchors.fill: parent
        anchors.topMargin: line.shown.heading ? line.rows.cardGap : 0

        SymbolIcon {
            x: 19
            anchors.verticalCenter: parent.verticalCenter
            visible: !line.shown.heading
            name: "doc"
            size: 14
        }
        ElidedText {
            id: name
            x: line.shown.heading ? 19 : 42
            y: line.shown.heading ? 11 : Math.round((parent.height - height) / 2)
            width: Math.min(implicitWidth, line.shown.heading ? end.x - x - 16
                : detail.x - x - 8 - (line.shown.kept ? kept.width + 8 : 0))
            text: line.shown.name
            role: line.shown.heading ? AppText.Role.SectionTitle : AppText.Role.Caption
            weight: line.shown.heading ? 600 : 500
            Accessible.ignored: true
        }
        Rectangle {
            id: kept
            anchors.left: name.right
            anchors.leftMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            visible: line.shown.kept
            width: 12 + keptText.implicitWidth
            height: 18
            radius: 9
            color: Theme.tint(Theme.graphic("green"), 0.15)
            AppText {
                id: keptText
                anchors.centerIn: parent
                text: "Kept"
                role: AppText.Role.Micro
                color: Theme.ink("green")
                Accessible.ignored: true
            }
        }
        ElidedText {
            id: detail
            x: line.shown.heading ? 19 : 308
            y: line.shown.heading ? 30 : Math.round((parent.height - height) / 2)
            width: Math.min(implicitWidth, end.x - x - 16)
            text: line.shown.heading ? line.shown.copies : line.shown.pathText
            role: AppText.Role.Caption
            color: Theme.text2
            Accessible.ignored: true
        }
        AppText {
            id: end
            anchors.right: parent.right
            anchors.rightMargin: 19
            anchors.verticalCenter: parent.verticalCenter
            text: line.shown.heading ? line.shown.saving : line.shown.date
            role: line.shown.heading ? AppText.Role.SectionTitle : AppText.Role.Caption
            color: line.shown.heading ? Theme.ink("green") : Theme.text2
            Accessible.ignored: true
        }
    }
    FocusRing {
        anchors.margins: 0
        anchors.fill: parent
        anchors.leftMargin: line.shown.heading ? 4 : line.rows.panelMargin
        anchors.rightMargin: anchors.leftMargin
        anchors.topMargin: line.shown.heading ? line.rows.cardGap + 4 : 0
        anchors.bottomMargin: line.shown.heading ? 4 : 0
        visible: line.ringShown
        radius: 8
    }
    TapHandler {
        onTapped: line.list.choose(line.row)
    }
}
