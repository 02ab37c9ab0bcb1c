import QtQuick

Page {
    id: running

    property string text
    property int completed: 0
    property int total: 0
    signal cancel()

    title: text
    backText: ""

    Rectangle {
        width: parent.width
        height: 8
        radius: 4
        color: running.theme.line
        Rectangle {
            width: running.total > 0 ? parent.width * Math.min(1, running.completed / running.total) : 0
            height: parent.height
            radius: 4
            color: running.theme.accent
        }
    }
    Text {
        text: running.total > 0 ? running.completed + " of " + running.total : "Working…"
        color: running.theme.faintText
        font.pixelSize: running.theme.small
    }
    footer: PushButton { theme: running.theme; text: "Cancel"; onClicked: running.cancel() }
}
