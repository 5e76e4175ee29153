// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma Singleton
import QtQuick
import Veltro.Design

/// The palette, the sizes and the curves that every screen shares. Light, whatever the desktop's
/// theme. Lengths in logical pixels, durations in milliseconds.
QtObject {
    // palette
    readonly property color page: "#F6F3EF"
    readonly property color card: "#FFFFFF"
    readonly property color sunken: "#F3EFEA"
    readonly property color hairline: "#E1DED9"
    readonly property color ink: "#10141C"
    readonly property color inkSecondary: "#3B414C"
    readonly property color inkTertiary: "#737B8A"
    readonly property color neutral: "#727272"
    readonly property color accent: "#6F64E5"
    readonly property color accentText: "#FFFFFF"
    readonly property color success: "#147F51"
    readonly property color warning: "#E38513"
    readonly property color danger: "#CF3938"

    // grounds that stand beside the palette
    readonly property color sidebar: "#EFEBE5"
    readonly property color hover: "#0D10141C" // ink at 5 %
    readonly property color pressed: "#1710141C" // ink at 9 %
    readonly property color focus: "#996F64E5" // accent at 60 %
    readonly property color selectedText: "#406F64E5" // accent at 25 %
    readonly property color scrim: "#4010141C" // ink at 25 %

    // fonts
    readonly property string family: FontFamilies.text
    readonly property string displayFamily: FontFamilies.display
    readonly property font titleFont: Qt.font({
            family: family,
            pixelSize: 22,
            weight: Font.DemiBold
        })
    readonly property font buttonFont: Qt.font({
            family: family,
            pixelSize: 16,
            weight: Font.DemiBold
        })

    // spacing
    readonly property int gap: 8
    readonly property int wideGap: 16
    readonly property int pageMargin: 40
    readonly property int cardRadius: 14

    // motion
    readonly property int quick: 120
    readonly property int springDuration: 500
    /// A critically damped spring of response 0.35 over springDuration, to 0.02 of its way.
    readonly property var spring: [0.287, 0.459, 0.042, 1, 1, 1]
    readonly property var easeIn: [0.42, 0, 1, 1, 1, 1]
    readonly property var easeOut: [0, 0, 0.58, 1, 1, 1]
    readonly property var easeInOut: [0.42, 0, 0.58, 1, 1, 1]

    /// The colour of a shadow.
    function shadow(opacity: real): color {
        return Qt.rgba(0, 0, 0, opacity);
    }
    /// The colour, or the one that the text names, with its opacity replaced.
    function faded(base: var, opacity: real): color {
        const known = Qt.lighter(base, 1); // which alone makes a colour of a text
        return Qt.rgba(known.r, known.g, known.b, opacity);
    }
}
