// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// A button that shows the choice in force and opens the list of all. It shows what it is told,
/// and announces what the user wants.
T.ComboBox {
    id: root

    required property string name
    property int choice: -1

    signal chosen(index: int)

    implicitWidth: 150
    implicitHeight: 30
    leftPadding: 12
    rightPadding: 30
    font.family: Theme.family
    font.pixelSize: 13
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    currentIndex: root.choice
    opacity: root.enabled ? 1 : 0.5
    Accessible.role: Accessible.ComboBox
    Accessible.name: root.name
    Accessible.description: root.displayText
    Accessible.onPressAction: root.popup.open()
    onActivated: index => {
        root.chosen(index);
        // The owner of the setting decides; typing and picking have broken the binding.
        root.currentIndex = Qt.binding(() => root.choice);
    }

    contentItem: Text {
        text: root.displayText
        textFormat: Text.PlainText
        font: root.font
        color: Theme.ink
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
    }
    indicator: Symbol {
        x: root.width - width - 10
        y: (root.height - height) / 2
        name: "chevron.up.down"
        size: 12
        color: Theme.inkTertiary
    }
    background: Surface {
        radius: 8
        color: root.down ? Theme.sunken : Theme.card
        strokeColor: Theme.hairline
        strokeWidth: 1

        FocusRing {
            shown: root.visualFocus
            radius: 10
            inset: -2
        }
    }
    delegate: T.ItemDelegate {
        id: entry

        required property int index
        required property string modelData

        width: ListView.view ? ListView.view.width : root.width
        implicitHeight: 28
        hoverEnabled: true
        highlighted: root.highlightedIndex === index
        Accessible.role: Accessible.ListItem
        Accessible.name: entry.modelData
        Accessible.selected: root.currentIndex === entry.index
        Accessible.onPressAction: entry.clicked()

        contentItem: Item {
            Symbol {
                x: 10
                anchors.verticalCenter: parent.verticalCenter
                visible: root.currentIndex === entry.index
                name: "checkmark"
                size: 11
                weight: Font.DemiBold
                color: entry.highlighted ? Theme.accentText : Theme.ink
            }
            Label {
                x: 30
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width - x - 12
                text: entry.modelData
                horizontalAlignment: Text.AlignLeft
                elide: Text.ElideRight
                color: entry.highlighted ? Theme.accentText : Theme.ink
                Accessible.ignored: true
            }
        }
        background: Surface {
            x: 4
            width: entry.width - 8
            height: entry.height
            radius: 6
            color: entry.highlighted ? Theme.accent : "transparent"
        }
    }
    popup: T.Popup {
        y: root.height + 4
        width: root.width
        height: Math.min(contentItem.implicitHeight + 10, 320)
        verticalPadding: 5
        margins: 8

        contentItem: ListView {
            clip: true
            implicitHeight: contentHeight
            model: root.popup.visible ? root.delegateModel : null
            currentIndex: root.highlightedIndex
            boundsBehavior: Flickable.StopAtBounds
            T.ScrollBar.vertical: ThinScrollBar {}
        }
        background: Surface {
            radius: 10
            color: Theme.card
            strokeColor: Theme.hairline
            strokeWidth: 1
            shadowColor: Qt.rgba(0, 0, 0, 0.14)
            shadowBlur: 20
            shadowOffsetY: 6
        }
    }
}
