import QtQuick

// One option of an offer: a number, a text or a flag.
Item {
    id: field

    property var theme
    property var definition  // {key, label, default, type}, and a pattern for some texts
    property var value: definition.default
    readonly property bool isFlag: definition.type === "bool"
    readonly property bool isNumber: definition.type === "number"
    readonly property bool isValid: isFlag || (isNumber ? !isNaN(Number(input.text)) && input.text.trim() !== "" : !definition.pattern || definition.pattern.test(input.text))

    implicitHeight: isFlag ? flag.implicitHeight : label.height + box.height + 4

    Switch {
        id: flag
        width: parent.width
        visible: field.isFlag
        theme: field.theme
        text: field.definition.label
        isOn: field.isFlag && field.value === true
        onToggled: (on) => field.value = on
    }
    Text {
        id: label
        visible: !field.isFlag
        text: field.definition.label
        color: field.theme.faintText
        font.pixelSize: field.theme.small
    }
    Rectangle {
        id: box
        visible: !field.isFlag
        anchors { left: parent.left; right: parent.right; top: label.bottom; topMargin: 4 }
        height: 32
        radius: 8
        color: field.theme.raised
        border { color: !field.isValid ? field.theme.caution : (input.activeFocus ? field.theme.accent : field.theme.line); width: input.activeFocus ? 2 : 1 }
        TextInput {
            id: input
            anchors { fill: parent; leftMargin: 10; rightMargin: 10 }
            verticalAlignment: TextInput.AlignVCenter
            clip: true
            activeFocusOnTab: true
            selectByMouse: true
            text: field.isFlag ? "" : String(field.definition.default)
            color: field.theme.text
            selectionColor: field.theme.accent
            selectedTextColor: field.theme.accentText
            font.pixelSize: field.theme.normal
            Accessible.role: Accessible.EditableText
            Accessible.name: field.definition.label
            onTextEdited: field.value = field.isNumber ? Number(text) : text
        }
    }
}
