import QtQuick
import Kestavon.Ui

/// Text in one of the type roles. Read out by screen readers; where it only repeats the name of the
/// control around it, set `Accessible.ignored`.
Text {
    enum Role { PageTitle, Metric, SheetTitle, EmptyTitle, DialogTitle, CardTitle, SectionTitle, Body, Caption, Micro }

    property int role: AppText.Role.Body
    property bool display: role <= AppText.Role.SheetTitle
    property int weight: [700, 700, 700, 600, 600, 600, 600, 400, 400, 600][role]

    color: Theme.text
    font.family: display ? Theme.displayFamily : Theme.family
    font.pixelSize: [28, 26, 20, 17, 15, 14, 13, 13, 12, 11][role]
    font.weight: weight
    font.letterSpacing: [-0.35, -0.3, -0.2, 0, 0, 0, 0, 0, 0, 0][role]
    lineHeight: [34, 32, 26, 24, 20, 20, 18, 18, 16, 14][role]
    lineHeightMode: Text.FixedHeight
    verticalAlignment: Text.AlignVCenter
    renderType: Text.NativeRendering
    textFormat: Text.PlainText

    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
