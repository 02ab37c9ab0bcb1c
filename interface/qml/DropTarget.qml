import QtQuick

// What the palette shows while nothing is selected. The host takes what is dropped or pasted.
Item {
    id: target

    property var theme
    property string message
    signal chooseFiles()
    signal openSettings()
    signal close()

    Keys.onReturnPressed: chooseFiles()

    Row {
        anchors { right: parent.right; top: parent.top; margins: 12 }
        spacing: 6
        PushButton { theme: target.theme; text: "⚙"; name: "Settings"; padding: 9; onClicked: target.openSettings() }
        PushButton { theme: target.theme; text: "×"; name: "Close"; padding: 10; onClicked: target.close() }
    }
    Rectangle {
        anchors { fill: parent; margins: 16; topMargin: 54; bottomMargin: 62 }
        radius: 14
        color: "transparent"
        border { color: target.theme.line; width: 2 }
        Column {
            anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter; margins: 14 }
            spacing: 8
            Text {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: "Drop or paste files here"
                color: target.theme.text
                font { pixelSize: target.theme.large; bold: true }
            }
            Text {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                maximumLineCount: 5
                elide: Text.ElideRight
                text: target.message
                color: target.theme.faintText
                font.pixelSize: target.theme.small
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }
    PushButton {
        anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: 16 }
        theme: target.theme
        text: "Choose Files…"
        isDefault: true
        onClicked: target.chooseFiles()
    }
}
