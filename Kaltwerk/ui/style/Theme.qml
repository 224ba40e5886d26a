pragma Singleton

import QtQuick
import Ventaro.Style

/// Every colour, size and duration of the views. Sizes are points, durations milliseconds.
QtObject {
    id: theme

    readonly property bool dark: Appearance.dark
    readonly property bool highContrast: Appearance.highContrast

    /// Black or white at `opacity`, laid over whatever is below.
    function ink(opacity: real): color {
        return dark ? Qt.rgba(1, 1, 1, opacity) : Qt.rgba(0, 0, 0, opacity);
    }
    function tint(base: color, opacity: real): color {
        return Qt.rgba(base.r, base.g, base.b, opacity);
    }

    // Surfaces
    readonly property color window: dark ? "#1C1D21" : "#F3F4F6"
    readonly property color sidebar: dark ? "#232529" : "#E8EAEE"
    readonly property color card: dark ? "#292B30" : "#FFFFFF"
    readonly property color field: dark ? "#1F2125" : "#FFFFFF"
    readonly property color popover: dark ? "#26282C" : "#F7F8FA"

    // Text
    readonly property color textPrimary: dark ? "#F1F2F4" : "#1B1C20"
    readonly property color textSecondary: dark ? "#B0B4BD" : "#555963"
    readonly property color textTertiary: dark ? "#A0A4AE" : "#63676F"

    // Blue: a surface under white text, a graphic, a text
    readonly property color accent: dark ? "#2069E4" : "#0A62E0"
    readonly property color accentHover: dark ? "#2A6FE5" : "#0757CC"
    readonly property color accentPressed: dark ? "#1A5BCB" : "#064BB2"
    readonly property color textOnAccent: "#FFFFFF"
    readonly property color accentFill: dark ? "#4C95FF" : "#0A62E0"
    readonly property color accentText: dark ? "#78B4FF" : "#0A5BD0"
    readonly property color focus: dark ? "#78B4FF" : "#0A62E0"
    readonly property color brandEnd: dark ? "#1C9DC6" : "#18A5CF"

    // Fills for bars, dots, lines and tints; the same colour as text and small icons
    readonly property color green: dark ? "#34CC5C" : "#22A548"
    readonly property color greenText: dark ? "#55DA7B" : "#14692D"
    readonly property color yellow: dark ? "#F7CB2D" : "#E3A800"
    readonly property color yellowText: dark ? "#F7D14C" : "#755900"
    readonly property color orange: dark ? "#FF9B33" : "#E27300"
    readonly property color orangeText: dark ? "#FFAC57" : "#A04500"
    readonly property color red: dark ? "#FF5A50" : "#E2383A"
    readonly property color redText: dark ? "#FF8880" : "#BE1E20"
    readonly property color cyan: dark ? "#3CC2EA" : "#0990B8"
    readonly property color cyanText: dark ? "#5FD0F2" : "#00647F"
    readonly property color purple: dark ? "#BC7BF5" : "#9650DC"
    readonly property color purpleText: dark ? "#CB9CFA" : "#7634BF"
    readonly property color mint: dark ? "#46D6BE" : "#0FAE97"
    readonly property color mintText: dark ? "#5FE0CA" : "#006A5B"

    readonly property color orangeButton: dark ? "#FF9B33" : "#BF5200"
    readonly property color orangeButtonHover: dark ? "#FFA94D" : "#AB4900"
    readonly property color orangeButtonPressed: dark ? "#EB8A23" : "#943F00"
    readonly property color textOnOrange: dark ? "#2A1500" : "#FFFFFF"

    // Ink
    readonly property color hairline: ink(0.08)
    readonly property color divider: ink(dark ? 0.11 : 0.10)
    readonly property color track: ink(highContrast ? 0.55 : dark ? 0.14 : 0.10)
    readonly property color controlFill: ink(dark ? 0.09 : 0.055)
    readonly property color controlHover: ink(dark ? 0.14 : 0.09)
    readonly property color controlPressed: ink(dark ? 0.19 : 0.14)
    // A border lies beside the fill, not on it, so that both inks have to be in its own.
    readonly property color controlBorder: ink(dark ? 0.154 : 0.121)
    readonly property color cardBorder: Qt.tint(card, hairline)
    readonly property color fieldBorder: ink(highContrast ? 0.55 : dark ? 0.20 : 0.18)
    readonly property color fieldBorderHover: ink(highContrast ? 0.69 : dark ? 0.34 : 0.32)
    readonly property color rowTint: ink(dark ? 0.04 : 0.035)
    readonly property color blockTint: ink(dark ? 0.05 : 0.045)
    readonly property color switchOff: ink(highContrast ? 0.55 : dark ? 0.26 : 0.22)
    readonly property color grid: ink(dark ? 0.08 : 0.07)
    readonly property color gridBase: ink(dark ? 0.16 : 0.14)
    readonly property color popoverTile: ink(0.07)
    readonly property color popoverBorder: ink(0.12)
    readonly property color scrollThumb: ink(0.26)
    readonly property color scrollThumbHover: ink(0.42)

    // Knobs and bubbles
    readonly property color sliderKnob: dark ? "#E8EAEE" : "#FFFFFF"
    readonly property color sliderKnobPressed: dark ? "#FFFFFF" : "#EEF1F5"
    readonly property color sliderKnobBorder: Qt.rgba(0, 0, 0, dark ? 0.35 : 0.20)
    readonly property color switchKnob: "#FFFFFF"
    readonly property color switchKnobBorder: Qt.rgba(0, 0, 0, 0.10)
    readonly property color segmentSelected: dark ? "#545559" : "#FFFFFF"
    readonly property color segmentBorder: dark ? "transparent" : Qt.rgba(0, 0, 0, 0.10)
    readonly property color bubble: dark ? "#E8EAEE" : "#2B2D33"
    readonly property color textOnBubble: dark ? "#1C1D21" : "#FFFFFF"

    readonly property real disabledOpacity: 0.42
    readonly property real busyOpacity: 0.75

    // Shape
    readonly property int radiusCard: 10
    readonly property int radiusTile: 8
    readonly property int radiusControl: 7
    readonly property int radiusSmall: 6

    // Type
    readonly property int speedSize: 28
    readonly property int pageTitleSize: 15
    readonly property int productSize: 14
    readonly property int sectionSize: 13
    readonly property int bodySize: 12
    readonly property int captionSize: 11
    readonly property int smallestSize: 10
    readonly property string monoFamily: "monospace"

    /// For sizes between whole pixels, which only a font's size in points can have.
    function fontPoints(pixels: real): real {
        return pixels * Appearance.pointsPerPixel;
    }

    // Motion
    readonly property int hoverIn: motion(80)
    readonly property int hoverOut: motion(120)
    readonly property int toggle: motion(140)
    readonly property int banner: motion(160)
    readonly property int bar: motion(200)
    readonly property int scrollBarStays: 900
    readonly property int scrollBarFade: motion(200)
    readonly property int spinnerTurn: 900

    function motion(milliseconds: int): int {
        return Appearance.reducedMotion ? 0 : milliseconds;
    }
}
