import QtQuick

// Colours and sizes. They follow the desktop's palette, light or dark.
QtObject {
    readonly property SystemPalette system: SystemPalette {}
    readonly property color ground: system.window
    readonly property color text: system.windowText
    readonly property color faintText: mixed(text, ground, 0.4)
    readonly property color line: mixed(text, ground, 0.8)
    readonly property color raised: mixed(text, ground, 0.92)
    readonly property color hovered: mixed(accent, ground, 0.8)
    readonly property color accent: system.highlight
    readonly property color accentText: system.highlightedText
    readonly property color caution: isDark ? "#f0b35a" : "#8a5200"
    readonly property bool isDark: ground.hslLightness < 0.5
    readonly property int small: 12
    readonly property int normal: 14
    readonly property int large: 17

    function mixed(first, second, part) {
        return Qt.rgba(first.r + (second.r - first.r) * part,
                       first.g + (second.g - first.g) * part,
                       first.b + (second.b - first.b) * part, 1)
    }
}
