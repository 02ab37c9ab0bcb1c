import QtQuick

// A titled page with a way back and a scrolling body.
Item {
    id: page

    property var theme
    property string title
    property string backText: "Back"
    default property alias body: column.data
    property alias footer: footerRow.data
    signal back()

    Text {
        id: heading
        anchors { left: parent.left; right: backButton.left; top: parent.top; margins: 18 }
        text: page.title
        elide: Text.ElideRight
        color: page.theme.text
        font { pixelSize: page.theme.large; bold: true }
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    PushButton {
        id: backButton
        anchors { right: parent.right; top: parent.top; margins: 14 }
        theme: page.theme
        text: page.backText
        visible: page.backText !== ""
        onClicked: page.back()
    }
    Flickable {
        id: scroller
        anchors { left: parent.left; right: parent.right; top: backButton.bottom; bottom: footerRow.top; margins: 18; topMargin: 12; bottomMargin: 8 }
        contentHeight: column.height
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        Column {
            id: column
            width: scroller.width
            spacing: 10
        }
    }
    Rectangle {
        anchors { right: parent.right; rightMargin: 6 }
        y: scroller.y + scroller.visibleArea.yPosition * scroller.height
        width: 4
        height: scroller.visibleArea.heightRatio * scroller.height
        radius: 2
        color: page.theme.line
        visible: scroller.visibleArea.heightRatio < 1
    }
    Row {
        id: footerRow
        anchors { right: parent.right; bottom: parent.bottom; margins: 14 }
        spacing: 8
    }
}
