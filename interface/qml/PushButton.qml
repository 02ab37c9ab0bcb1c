import QtQuick

Rectangle {
    id: button

    property var theme
    property string text
    property string name: text
    property bool isDefault: false
    property int padding: 14
    signal clicked()

    implicitWidth: label.implicitWidth + 2 * padding
    implicitHeight: 32
    radius: 8
    color: isDefault ? theme.accent : (area.containsMouse ? theme.hovered : theme.raised)
    border.color: activeFocus ? theme.accent : theme.line
    border.width: activeFocus ? 2 : 1
    opacity: enabled ? 1 : 0.5
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onSpacePressed: clicked()

    Text {
        id: label
        anchors.centerIn: parent
        width: Math.min(implicitWidth, parent.width - 8)
        text: button.text
        elide: Text.ElideRight
        color: button.isDefault ? button.theme.accentText : button.theme.text
        font.pixelSize: button.theme.normal
    }
    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        onClicked: button.clicked()
    }
}
