// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// The main button: "Save", a working verb, or "Saved".
ActionButton {
    id: root

    property bool filled: false
    property bool working: false
    property bool confirmed: false
    property string verb

    text: root.confirmed ? qsTr("Saved") : root.working ? root.verb : qsTr("Save")
    enabled: root.filled && !root.working
    opacity: !root.filled && !root.working ? 0.5 : 1

    contentItem: Item {
        implicitWidth: Math.max(96, save.implicitWidth, busy.implicitWidth, saved.implicitWidth)
        implicitHeight: save.implicitHeight

        Row {
            id: save
            anchors.centerIn: parent
            spacing: 8
            opacity: root.confirmed || root.working ? 0 : 1

            Text {
                text: qsTr("Save")
                textFormat: Text.PlainText
                font: root.font
                color: root.foreground
            }
            LineIcon {
                anchors.verticalCenter: parent.verticalCenter
                width: 14
                height: 14
                name: "arrowRight"
                stroke: 2.4
                color: root.foreground
            }
        }
        Row {
            id: busy
            anchors.centerIn: parent
            spacing: 8
            visible: root.working && !root.confirmed

            Spinner {
                anchors.verticalCenter: parent.verticalCenter
                width: 14
                height: 14
                color: "#FFFFFF"
                running: busy.visible
                Accessible.ignored: true
            }
            Item {
                implicitWidth: 88
                implicitHeight: verbText.implicitHeight
                anchors.verticalCenter: parent.verticalCenter

                Text {
                    id: verbText
                    property string shownVerb: root.verb

                    text: root.verb
                    textFormat: Text.PlainText
                    font.family: Theme.family
                    font.pixelSize: 13
                    font.weight: Font.DemiBold
                    color: root.foreground
                    onShownVerbChanged: if (busy.visible)
                        change.restart()

                    NumberAnimation on opacity {
                        id: change
                        running: false
                        from: 0
                        to: 1
                        duration: 550
                        easing.type: Easing.BezierSpline
                        easing.bezierCurve: Theme.easeInOut
                    }
                }
            }
        }
        Row {
            id: saved
            anchors.centerIn: parent
            spacing: 7
            opacity: root.confirmed ? 1 : 0

            Behavior on opacity {
                NumberAnimation {
                    duration: root.confirmed ? 180 : 220
                    easing.type: Easing.BezierSpline
                    easing.bezierCurve: root.confirmed ? Theme.easeOut : Theme.easeIn
                }
            }
            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                name: "checkmark"
                size: 13
                weight: Font.Bold
                color: root.foreground
            }
            Text {
                text: qsTr("Saved")
                textFormat: Text.PlainText
                font: root.font
                color: root.foreground
            }
        }
    }
}
