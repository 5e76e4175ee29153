// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.Design

/// The small parts of the design, in all their kinds.
Rectangle {
    color: Theme.page

    Column {
        x: 32
        y: 28
        width: parent.width - 64
        spacing: 20

        Eyebrow {
            text: "Batch"
        }
        Label {
            text: "Paste many links"
            font: Theme.titleFont
        }
        SectionHeader {
            width: parent.width
            title: "Recent"
            Label {
                text: "12 items"
                color: Theme.inkTertiary
            }
        }
        Row {
            spacing: 12
            Tag {
                text: "1080p"
                filled: true
            }
            Tag {
                text: "H.264"
            }
            Tag {
                text: "Failed"
                tint: Theme.danger
            }
            StatusDot {
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.success
            }
            StatusDot {
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.warning
            }
            Spinner {}
            Spinner {
                width: 28
                height: 28
                color: Theme.accent
            }
        }
        HairlineDivider {}
        Row {
            spacing: 12
            Repeater {
                model: ["Primary", "Secondary", "Ghost", "Success"]
                delegate: ActionButton {
                    required property string modelData
                    required property int index
                    text: modelData
                    kind: index
                    iconName: index === 0 ? "arrowRight" : index === 1 ? "clipboard" : ""
                }
            }
            CapsuleButton {
                anchors.verticalCenter: parent.verticalCenter
                text: "Open"
            }
            CapsuleButton {
                anchors.verticalCenter: parent.verticalCenter
                text: "View queue"
                symbol: "arrow.right"
                symbolAtEnd: true
                ground: "transparent"
                foreground: Theme.accent
            }
            IconButton {
                anchors.verticalCenter: parent.verticalCenter
                implicitWidth: 36
                implicitHeight: 36
                name: "close"
                text: "Close"
                ground: Theme.card
                outlined: true
            }
        }
        Row {
            spacing: 12
            TextField {
                placeholderText: "en, de"
            }
            TextField {
                text: "A text that is there"
                focus: true
            }
        }
        Row {
            spacing: 24
            Surface {
                width: 360
                height: 64
                radius: 14
                strokeColor: Theme.hairline
                strokeWidth: 1
                shadowColor: Theme.shadow(0.1)
                shadowBlur: 16
                shadowOffsetY: 8
            }
            Surface {
                width: 32
                height: 32
                radius: 16
                cornerExponent: 2
                color: Theme.ink
                LineIcon {
                    anchors.centerIn: parent
                    width: 14
                    height: 14
                    name: "clipboard"
                    color: "white"
                }
            }
            Surface {
                width: 90
                height: 32
                radius: 16
                color: Theme.sunken
                strokeColor: Theme.hairline
                strokeWidth: 1
            }
        }
        Flow {
            width: parent.width
            spacing: 18
            Repeater {
                model: ["download", "arrowRight", "link", "clipboard", "close", "play", "film", "house", "arrow.down.circle", "arrow.down.circle.fill", "square.stack", "slider.horizontal.3", "globe", "globe.slash", "folder", "square.grid.2x2.fill", "arrow.right", "arrow.clockwise", "checkmark", "xmark", "xmark.circle.fill", "plus", "minus", "ellipsis", "magnifyingglass", "trash", "doc", "chevron.down", "chevron.up.down", "chevron.right", "exclamationmark.triangle.fill", "play.fill", "pause.fill", "speaker.wave.2.fill", "speaker.slash.fill", "arrow.up.left.and.arrow.down.right", "arrow.down.right.and.arrow.up.left", "waveform"]
                delegate: Row {
                    id: both
                    required property string modelData
                    spacing: 6
                    LineIcon {
                        name: both.modelData
                        width: 32
                        height: 32
                        color: Theme.ink
                    }
                    Symbol {
                        name: both.modelData
                        size: 13
                        weight: Font.DemiBold
                        color: Theme.accent
                    }
                }
            }
        }
    }
}
