import QtQuick
import Kestavon.Ui

/// Text in one of the type roles. Read out by screen readers; where it only repeats the name of the
/// control around it, set `Accessible.ignored`.
Text {
    enum Role { PageTitle, Metric, SheetTitle, EmptyTitle, DialogTitle, CardTitle, SectionTitle, Body, Caption, Micro }

    property int role: AppText.Role.Body
    property bool display: role <= AppText.Role.SheetTitle
    property int weight: Theme.textWeights[role]

    color: Theme.text
    font.family: display ? Theme.displayFamily : Theme.family
    font.pixelSize: Theme.textSizes[role]
    font.weight: weight
    font.letterSpacing: Theme.textSpacings[role]
    lineHeight: Theme.textLineHeights[role]
    lineHeightMode: Text.FixedHeight
    verticalAlignment: Text.AlignVCenter
    renderType: Text.NativeRendering
    textFormat: Text.PlainText

    Accessible.role: Accessible.StaticText
    // One that is ignored would still tell of every change.
    Accessible.name: Accessible.ignored ? "" : text
}
