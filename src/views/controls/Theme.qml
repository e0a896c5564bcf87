// SPDX-License-Identifier: MIT
pragma Singleton
import QtQuick

/// Everything that makes our windows look alike. Lengths are in device-independent pixels on a grid of 4.
QtObject {
    /// Set by ViewEngine, and followed live.
    property bool dark: false
    property string fontFamily
    /// Windows can be translucent: they have shadows and soft corners.
    property bool translucent: false

    // Surfaces, from the back to the front
    readonly property color window: dark ? "#1b1b1f" : "#f6f6f8"
    readonly property color surface: dark ? "#222227" : "#ffffff"
    readonly property color overlay: dark ? "#fe1c1c20" : "#fefcfcfd" ///< floats over whatever lies below
    readonly property color overlayOpaque: dark ? "#1c1c20" : "#fcfcfd" ///< where nothing can shine through
    readonly property color overlayOutline: dark ? "#4dffffff" : "#4d000000"
    readonly property color outline: dark ? "#38383f" : "#dcdce2"
    readonly property color hairline: dark ? "#5a5a64" : "#b4b4be" ///< around what lies over other things of its window
    readonly property color mark: dark ? "#787882" : "#868690" ///< tells a place without words, so it stands out from all of these
    readonly property color separator: dark ? "#2e2e34" : "#e8e8ec"
    readonly property color scrim: dark ? "#66000000" : "#1f000000" ///< over what can't be used for now
    readonly property color shadow: dark ? "#8c000000" : "#38000000" ///< of what floats

    // What can be used
    readonly property color fill: dark ? "#2f2f36" : "#ececf0"
    readonly property color fillHovered: dark ? "#3a3a42" : "#e2e2e8"
    readonly property color fillPressed: dark ? "#45454e" : "#d6d6de"
    readonly property color focusRing: accent

    // Text; each is readable on every surface and fill above
    readonly property color text: dark ? "#f4f4f6" : "#18181c"
    readonly property color textSecondary: dark ? "#b4b4be" : "#55555f"
    readonly property color textOnAccent: dark ? "#101018" : "#ffffff"

    // Meanings
    readonly property color accent: dark ? "#9d9bff" : "#4a42d4"
    readonly property color accentHovered: dark ? "#b0aeff" : "#5a53e0"
    readonly property color accentPressed: dark ? "#c2c0ff" : "#3e37b8"
    readonly property color accentFill: dark ? "#2d2c4d" : "#e6e5fb"
    readonly property color info: accent
    readonly property color good: dark ? "#5fd38d" : "#137a3a"
    readonly property color warn: dark ? "#ffc04d" : "#934900"
    readonly property color bad: dark ? "#ff9089" : "#c4281d"
    readonly property color warnFill: dark ? "#40331a" : "#fcefdc"
    readonly property color goodFill: dark ? "#1d3a29" : "#def3e5"
    readonly property color badFill: dark ? "#45252a" : "#fde8e6"

    // Spacing
    readonly property int spacingTiny: 4
    readonly property int spacingSmall: 8
    readonly property int spacing: 12
    readonly property int spacingLarge: 16
    readonly property int spacingWide: 20
    readonly property int spacingHuge: 24
    readonly property int iconColumn: 28 ///< a symbol of 16, and the gap before the words

    // Radii
    readonly property int radius: 14     ///< of what floats
    readonly property int radiusMedium: 10 ///< of what lies in a window, and of large buttons
    readonly property int radiusSmall: 6 ///< of what lies 8 inside of that, so that both turn about one point

    // Type scale: sizes in pixels
    readonly property int sizeTiny: 10
    readonly property int sizeCaps: 11 ///< in capitals
    readonly property int sizeSmall: 12
    readonly property int sizeBody: 13
    readonly property int sizeGlance: 14 ///< read in passing, from far
    readonly property int sizeTitle: 15
    readonly property int sizeLarge: 20
    readonly property int sizeHeading: 26
    readonly property int sizeHero: 42
    readonly property int weightBody: Font.Normal
    readonly property int weightMedium: Font.Medium
    readonly property int weightStrong: Font.DemiBold

    // Motion, in milliseconds
    readonly property int motion: 180
}
