import QtQuick

Page {
    id: finished

    property var outcome: ({status: "", outputs: [], seconds: 0})
    signal reveal()
    signal open()
    signal copyPath()

    readonly property bool isDone: outcome.status === "completed"
    title: isDone ? "Done" : (outcome.status === "cancelled" ? "Cancelled" : "Not done")

    Text {
        width: parent.width
        visible: !finished.isDone
        wrapMode: Text.Wrap
        text: finished.outcome.error === undefined ? "" : finished.outcome.error
        color: finished.theme.text
        font.pixelSize: finished.theme.normal
    }
    Repeater {
        model: finished.outcome.outputs.slice(0, 20)
        Text {
            width: parent.width
            elide: Text.ElideMiddle
            text: modelData.substring(modelData.lastIndexOf("/") + 1)
            color: finished.theme.text
            font.pixelSize: finished.theme.normal
        }
    }
    Text {
        visible: finished.isDone
        text: finished.outcome.outputs.length + (finished.outcome.outputs.length === 1 ? " file · " : " files · ")
              + finished.outcome.seconds.toFixed(1) + " s"
        color: finished.theme.faintText
        font.pixelSize: finished.theme.small
    }
    footer: [
        PushButton { theme: finished.theme; visible: finished.isDone; text: "Show"; onClicked: finished.reveal() },
        PushButton { theme: finished.theme; visible: finished.isDone; text: "Copy Path"; onClicked: finished.copyPath() },
        PushButton { theme: finished.theme; visible: finished.isDone; text: "Open"; isDefault: true; onClicked: finished.open() }
    ]
}
