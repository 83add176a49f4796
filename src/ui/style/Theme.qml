pragma Singleton
import QtQuick

/// The look: colours, type and times. Follows the desktop's palette unless `choice` is set.
QtObject {
    id: theme

    /// "light", "dark", or empty to follow the desktop.
    property string choice
    /// What the desktop asks programs for: 1 dark, 2 light, 0 nothing, and then its palette tells.
    property int desktopScheme: 0
    /// The desktop asks programs to keep still: nothing slides or fades, and what must move steps.
    property bool reducedMotion: false

    readonly property SystemPalette desktop: SystemPalette {}
    readonly property bool dark: choice !== "" ? choice === "dark"
        : desktopScheme !== 0 ? desktopScheme === 1
        : desktop.window.hslLightness < 0.5

    readonly property color bg: dark ? "#1A1C20" : "#F4F5F7"
    readonly property color sidebar: dark ? "#141619" : "#EAECEF"
    readonly property color surface: dark ? "#23262B" : "#FFFFFF"
    readonly property color sunken: dark ? "#1E2125" : "#F0F1F4"
    readonly property color elevated: dark ? "#2A2E34" : "#FFFFFF"
    readonly property color hairline: dark ? "#33373E" : "#E1E4E9"
    readonly property color border: dark ? "#474D57" : "#CACFD7"
    readonly property color outline: dark ? "#7F8794" : "#838B98"
    readonly property color track: dark ? "#373C44" : "#E3E6EB"

    readonly property color text: dark ? "#ECEEF2" : "#15181D"
    readonly property color text2: dark ? "#AAB1BC" : "#535B67"
    readonly property color text3: dark ? "#929AA6" : "#616976"
    readonly property color onSolid: "#FFFFFF"
    readonly property color accent: dark ? "#6DA0FF" : "#2A63E2"
    readonly property color accentInk: dark ? "#86B0FF" : "#1F55CE"

    readonly property color accentSolid: dark ? "#2F6AE8" : "#2A63E2"
    readonly property color accentSolidHover: dark ? "#2A62DC" : "#2358D0"
    readonly property color accentSolidPress: dark ? "#2455C2" : "#1F50BE"
    readonly property color accentSolidEdge: dark ? "#4C82F3" : "#1F50BE"
    readonly property color redSolid: dark ? "#D03641" : "#CF2935"
    readonly property color redSolidHover: dark ? "#C42F3A" : "#C0222E"
    readonly property color redSolidPress: dark ? "#AB2A34" : "#AD1E29"
    readonly property color redSolidEdge: dark ? "#E05A63" : "#AD1E29"
    readonly property color purpleSolid: dark ? "#7A45DB" : "#7339D6"
    readonly property color purpleSolidHover: dark ? "#6E3CCB" : "#682FCA"
    readonly property color purpleSolidPress: dark ? "#6336B6" : "#5D2BB2"
    readonly property color purpleSolidEdge: dark ? "#946AEA" : "#5D2BB2"
    readonly property color button: dark ? "#2F333A" : "#FFFFFF"
    readonly property color buttonHover: dark ? "#363B43" : "#F7F8FA"
    readonly property color buttonPress: dark ? "#2A2E34" : "#ECEEF1"
    readonly property color buttonEdge: dark ? "#474D57" : "#C6CBD4"

    readonly property color hover: tint(text, dark ? 0.055 : 0.05)
    readonly property color press: tint(text, dark ? 0.10 : 0.09)
    readonly property color selectedRow: dark ? "#2B3750" : "#E5ECFC"
    readonly property color selectedRowLine: dark ? "#34435F" : "#D3DFFA"
    readonly property color selectedSide: dark ? "#2A2E34" : "#FFFFFF"
    readonly property color selectedSideLine: dark ? "#3A3F47" : "#D6DAE0"
    readonly property color scrim: dark ? Qt.rgba(0, 0, 0, 0.55) : Qt.rgba(17 / 255, 20 / 255, 26 / 255, 0.38)
    readonly property color thumb: tint(text, dark ? 0.26 : 0.24)
    /// The three rings behind a sheet, widest last, that stand for its shadow.
    readonly property var rings: dark
        ? [Qt.rgba(0, 0, 0, 0.34), Qt.rgba(0, 0, 0, 0.20), Qt.rgba(0, 0, 0, 0.11)]
        : [Qt.rgba(17 / 255, 20 / 255, 26 / 255, 0.08), Qt.rgba(17 / 255, 20 / 255, 26 / 255, 0.045),
            Qt.rgba(17 / 255, 20 / 255, 26 / 255, 0.025)]

    /// The named colours: the tone of bars, dots and large symbols, and that of text and small ones.
    readonly property var tones: dark ? {
        accent: ["#6DA0FF", "#86B0FF"], secondary: ["#949DAA", "#AAB1BC"], primary: ["#ECEEF2", "#ECEEF2"],
        blue: ["#5C9BFF", "#7FB0FF"], gray: ["#949DAA", "#A9B1BC"], red: ["#FF6A6D", "#FF8C8E"],
        pink: ["#FF74AD", "#FF8FBD"], purple: ["#B48DFF", "#C3A5FF"], orange: ["#FFA245", "#FFB266"],
        teal: ["#3CC2C9", "#54CCD2"], indigo: ["#8D92FF", "#A6AAFF"], cyan: ["#43BBE4", "#62C8EA"],
        green: ["#48C782", "#5FD193"], ember: ["#E66633", "#FF9A70"]
    } : {
        accent: ["#2A63E2", "#1F55CE"], secondary: ["#7B8390", "#535B67"], primary: ["#15181D", "#15181D"],
        blue: ["#2E74E6", "#1D57C2"], gray: ["#7B8390", "#555D69"], red: ["#DC3640", "#B01B29"],
        pink: ["#DA4187", "#AE2167"], purple: ["#8A4FDF", "#6A33BE"], orange: ["#CC6C02", "#974500"],
        teal: ["#0C8E96", "#09646B"], indigo: ["#5558D9", "#4043B8"], cyan: ["#0A8BB0", "#076384"],
        green: ["#1C8F50", "#106838"], ember: ["#E66633", "#A43A0C"]
    }
    /// The tone of `name` for bars, dots, outlines and symbols of 18 px and more.
    function graphic(name: string): color {
        return Qt.color(tones[name][0]);
    }
    /// The tone of `name` for text and small symbols.
    function ink(name: string): color {
        return Qt.color(tones[name][1]);
    }
    /// `tone` at `share` opacity: 0.15 behind badges and capsules, 0.13 behind symbols.
    function tint(tone: color, share: real): color {
        return Qt.rgba(tone.r, tone.g, tone.b, share);
    }
    /// `share` of `tone` laid over the opaque `ground`.
    function over(ground: color, tone: color, share: real): color {
        return Qt.tint(ground, tint(tone, share));
    }

    readonly property string family: "Inter Tabular"
    readonly property string displayFamily: "Inter Display Tabular"

    // By AppText's roles.
    readonly property list<int> textWeights: [700, 700, 700, 600, 600, 600, 600, 400, 400, 600]
    readonly property list<int> textSizes: [28, 26, 20, 17, 15, 14, 13, 13, 12, 11]
    readonly property list<real> textSpacings: [-0.35, -0.3, -0.2, 0, 0, 0, 0, 0, 0, 0]
    readonly property list<int> textLineHeights: [34, 32, 26, 24, 20, 20, 18, 18, 16, 14]

    readonly property int sidebarWidth: 232
    readonly property int toolbarHeight: 52

    readonly property int hoverTime: time(90)
    readonly property int sheetInTime: time(160)
    readonly property int sheetOutTime: time(110)
    readonly property int barInTime: time(140)
    readonly property int barOutTime: time(110)
    readonly property int growTime: time(400)
    readonly property int countTime: time(250)
    function time(milliseconds: int): int {
        return reducedMotion ? 0 : milliseconds;
    }
}
