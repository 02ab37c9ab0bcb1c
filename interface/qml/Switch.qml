import QtQuick

Item {
    id: control

    property var theme
    property string text
    property bool isOn: false
    signal toggled(bool on)

    implicitHeight: 30
    activeFocusOnTab: true
    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checked: isOn
    Accessible.onToggleAction: toggled(!isOn)
    Keys.onSpacePressed: toggled(!isOn)

    Text {
        anchors { left: parent.left; right: track.left; rightMargin: 12; verticalCenter: parent.verticalCenter }
        text: control.text
        elide: Text.ElideRight
        color: control.theme.text
        font.pixelSize: control.theme.normal
    }
    Rectangle {
        id: track
        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        width: 40
        height: 22
        radius: 11
        color: control.isOn ? control.theme.accent : control.theme.line
        border.color: control.activeFocus ? control.theme.text : "transparent"
        Rectangle {
            x: control.isOn ? parent.width - width - 3 : 3
            anchors.verticalCenter: parent.verticalCenter
            width: 16
            height: 16
            radius: 8
            color: "white"
        }
    }
    MouseArea { anchors.fill: parent; onClicked: control.toggled(!control.isOn) }
}
