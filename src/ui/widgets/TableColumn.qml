import QtQml

/// How one column of a VirtualTable is laid out and drawn.
QtObject {
    property string title
    /// Width in pixels; 0 for a column that takes a share of what the fixed ones leave.
    property real width: 0
    property real stretch: 0
    property bool alignRight: false
    /// Names are stronger than what else is told of the row.
    property bool strong: false
    property bool secondary: false
    /// A symbol before the text; empty for none.
    property string symbol
    /// Width of the bar for the largest row, left of the text; 0 for none.
    property real barWidth: 0
    /// Room for the text right of the bar.
    property real barTextWidth: 64
}
