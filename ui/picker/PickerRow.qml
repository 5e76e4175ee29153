// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// A row that saves what it names.
T.Button {
    id: root

    required property string title
    property string leading
    property string trailing

    objectName: "pickerRow"
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    padding: 14
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: root.title
    Accessible.description: root.trailing === "" ? root.leading : qsTr("%1, %2").arg(root.leading).arg(root.trailing)
    Accessible.onPressAction: root.clicked()

    contentItem: Item {
        implicitHeight: texts.implicitHeight

        Column {
            id: texts
            anchors.left: parent.left
            anchors.right: arrow.left
            anchors.rightMargin: 12
            spacing: 3

            Label {
                objectName: "label"
                width: parent.width
                text: root.title
                horizontalAlignment: Text.AlignLeft
                elide: Text.ElideRight
                maximumLineCount: 1
                font.pixelSize: 14
                font.weight: Font.DemiBold
                Accessible.ignored: true
            }
            Row {
                id: facts
                spacing: 6

                Label {
                    width: Math.min(implicitWidth, texts.width - (end.visible ? end.width + facts.spacing : 0))
                    text: root.leading
                    elide: Text.ElideRight
                    maximumLineCount: 1
                    color: Theme.inkSecondary
                    font.pixelSize: 11
                    Accessible.ignored: true
                }
                Label {
                    id: end
                    visible: text !== ""
                    text: root.trailing
                    color: Theme.inkTertiary
                    font.pixelSize: 11
                    Accessible.ignored: true
                }
            }
        }
        Symbol {
            id: arrow
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            name: "arrow.down.circle.fill"
            size: 18
            color: Theme.accent
        }
    }
    background: Surface {
        radius: 12
        color: root.down ? Theme.sunken : Theme.card
        strokeColor: root.hovered ? Theme.faded(Theme.accent, 0.5) : Theme.hairline
        strokeWidth: 1

        FocusRing {
            shown: root.visualFocus
            radius: 14
            inset: -2
        }
    }
}
