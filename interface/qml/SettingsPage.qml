import QtQuick

Page {
    id: page

    property var settings: ({permissions: {}})
    property string problem
    readonly property var letters: ["C", "X", "V", "F", "K"]  // those that the host takes
    readonly property string modifiers: "Control–Option"
    signal shortcutChosen(string letter)
    signal gestureToggled(bool on)
    signal loginToggled(bool on)
    signal permissionOpened(string section)
    signal anchoringRequested()

    title: "Settings"
    backText: "Done"

    component Heading: Text {
        topPadding: 8
        color: page.theme.text
        font { pixelSize: page.theme.normal; bold: true }
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    component Note: Text {
        width: parent.width
        visible: text !== ""
        wrapMode: Text.Wrap
        color: page.theme.faintText
        font.pixelSize: page.theme.small
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Note { text: page.problem; color: page.theme.caution }

    Heading { text: "Shortcut: " + page.modifiers + " and a letter" }
    Row {
        spacing: 8
        Repeater {
            model: page.letters
            PushButton {
                theme: page.theme
                text: modelData
                name: page.modifiers + "–" + modelData
                isDefault: page.settings.shortcutKey === modelData
                onClicked: page.shortcutChosen(modelData)
            }
        }
    }
    Note { text: page.settings.shortcutStatus || "" }

    Heading { text: "Opening" }
    Switch {
        width: parent.width
        theme: page.theme
        text: "Shift and right click in the file manager"
        isOn: page.settings.gesture === true
        onToggled: (on) => page.gestureToggled(on)
    }
    Note { text: page.settings.gestureStatus || "" }
    Switch {
        width: parent.width
        theme: page.theme
        text: "Launch at login"
        isOn: page.settings.loginStatus === "enabled"
        onToggled: (on) => page.loginToggled(on)
    }
    Note { text: page.settings.loginStatus || "" }

    Heading { text: "Permissions" }
    Note { text: "Accessibility: " + (page.settings.permissions.accessibility ? "allowed" : "not allowed; the palette opens at the pointer") }
    Row {
        spacing: 8
        PushButton {
            theme: page.theme
            text: "Allow"
            name: "Allow accessibility"
            enabled: !page.settings.permissions.accessibility
            onClicked: page.anchoringRequested()
        }
        PushButton { theme: page.theme; text: "Open Settings…"; onClicked: page.permissionOpened("Accessibility") }
    }
    Note { text: "Input monitoring: " + (page.settings.permissions.inputMonitoring ? "allowed" : "not available") }
    Note { text: "Automation: " + (page.settings.permissions.automation || "") }
}
