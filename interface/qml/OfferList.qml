import QtQuick

Page {
    id: list

    property var files: []
    property string message
    property var offers: []
    signal chosen(var offer)

    title: files.length === 1 ? files[0].name : files.length + " files"

    Text {
        width: parent.width
        visible: text !== ""
        wrapMode: Text.Wrap
        text: list.message
        color: list.theme.caution
        font.pixelSize: list.theme.small
    }
    Repeater {
        model: list.files.slice(0, 8)
        Text {
            width: parent.width
            elide: Text.ElideMiddle
            text: (list.files.length === 1 ? "" : modelData.name + " · ") + modelData.detail
            color: list.theme.faintText
            font.pixelSize: list.theme.small
        }
    }
    Text {
        visible: list.files.length > 8
        text: "and " + (list.files.length - 8) + " more"
        color: list.theme.faintText
        font.pixelSize: list.theme.small
    }
    Repeater {
        model: list.offers
        Rectangle {
            width: parent.width
            height: lines.height + 18
            radius: 10
            color: area.containsMouse && modelData.available ? list.theme.hovered : list.theme.raised
            border { color: activeFocus ? list.theme.accent : list.theme.line; width: activeFocus ? 2 : 1 }
            activeFocusOnTab: modelData.available
            Accessible.role: Accessible.Button
            Accessible.name: modelData.title
            Accessible.description: modelData.available ? modelData.summary : modelData.requirement
            Accessible.onPressAction: if (modelData.available) list.chosen(modelData)
            Keys.onReturnPressed: if (modelData.available) list.chosen(modelData)
            Column {
                id: lines
                anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; margins: 12 }
                spacing: 2
                Text {
                    width: parent.width
                    text: modelData.title
                    elide: Text.ElideRight
                    color: modelData.available ? list.theme.text : list.theme.faintText
                    font { pixelSize: list.theme.normal; bold: true }
                }
                Text {
                    width: parent.width
                    text: modelData.available ? modelData.summary : modelData.requirement
                    wrapMode: Text.Wrap
                    color: modelData.available ? list.theme.faintText : list.theme.caution
                    font.pixelSize: list.theme.small
                }
            }
            MouseArea {
                id: area
                anchors.fill: parent
                hoverEnabled: true
                enabled: modelData.available
                onClicked: list.chosen(modelData)
            }
        }
    }
}
