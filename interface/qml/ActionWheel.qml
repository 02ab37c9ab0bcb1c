import QtQuick
import QtQuick.Shapes

// The actions around a middle with four small controls and a label. Its geometry is that of the
// backdrop which the host cuts to the same number of actions.
Item {
    id: wheel

    property var theme
    property var entries: []  // {title, detail, available}
    property string label
    signal chosen(int index)
    signal openLabel()
    signal chooseFiles()
    signal showAll()
    signal openSettings()
    signal close()

    // Named as in the host's policies.
    readonly property real wheelMargin: 14
    readonly property real innerPart: 0.218
    readonly property real wedgeGap: 0.035
    readonly property real wedgeCorner: 10

    readonly property real outer: Math.min(width, height) / 2 - wheelMargin
    readonly property real inner: Math.min(width, height) * innerPart
    readonly property real step: entries.length > 0 ? 2 * Math.PI / entries.length : 0
    property int current: -1

    focus: true
    Keys.onRightPressed: current = (current + 1) % entries.length
    Keys.onLeftPressed: current = (Math.max(current, 0) + entries.length - 1) % entries.length
    Keys.onReturnPressed: if (current >= 0) chosen(current)
    onEntriesChanged: current = -1

    function wedgeAt(x, y) {
        var dx = x - width / 2, dy = y - height / 2
        var distance = Math.sqrt(dx * dx + dy * dy)
        if (distance < inner || distance > outer || entries.length === 0)
            return -1
        var turn = (Math.atan2(dy, dx) + Math.PI / 2 + step / 2 + 2 * Math.PI) % (2 * Math.PI)
        return Math.min(entries.length - 1, Math.floor(turn / step))
    }
    function spot(radius, angle) {
        return (width / 2 + radius * Math.cos(angle)) + "," + (height / 2 + radius * Math.sin(angle))
    }
    function wedgePath(index) {
        if (index < 0 || entries.length === 0)
            return ""
        var start = -Math.PI / 2 - step / 2 + index * step + wedgeGap / 2
        var end = start + step - wedgeGap
        var outside = wedgeCorner / outer, inside = wedgeCorner / inner
        var largeOuter = end - start - 2 * outside > Math.PI ? 1 : 0
        var largeInner = end - start - 2 * inside > Math.PI ? 1 : 0
        return "M" + spot(outer, start + outside)
             + " A" + outer + "," + outer + " 0 " + largeOuter + " 1 " + spot(outer, end - outside)
             + " Q" + spot(outer, end) + " " + spot(outer - wedgeCorner, end)
             + " L" + spot(inner + wedgeCorner, end)
             + " Q" + spot(inner, end) + " " + spot(inner, end - inside)
             + " A" + inner + "," + inner + " 0 " + largeInner + " 0 " + spot(inner, start + inside)
             + " Q" + spot(inner, start) + " " + spot(inner + wedgeCorner, start)
             + " L" + spot(outer - wedgeCorner, start)
             + " Q" + spot(outer, start) + " " + spot(outer, start + outside) + " Z"
    }

    Shape {
        anchors.fill: parent
        visible: wheel.current >= 0
        ShapePath {
            strokeColor: "transparent"
            fillColor: wheel.theme.hovered
            PathSvg { path: wheel.wedgePath(wheel.current) }
        }
    }
    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        onPositionChanged: (mouse) => wheel.current = wheel.wedgeAt(mouse.x, mouse.y)
        onExited: wheel.current = -1
        onClicked: (mouse) => {
            var index = wheel.wedgeAt(mouse.x, mouse.y)
            if (index >= 0)
                wheel.chosen(index)
        }
    }
    Repeater {
        model: wheel.entries
        Column {
            id: wedge
            readonly property real angle: -Math.PI / 2 + index * wheel.step
            readonly property real room: Math.min(112, wheel.step * (wheel.outer + wheel.inner) / 2 - 10)
            width: room
            x: wheel.width / 2 + (wheel.outer + wheel.inner) / 2 * Math.cos(angle) - width / 2
            y: wheel.height / 2 + (wheel.outer + wheel.inner) / 2 * Math.sin(angle) - height / 2
            spacing: 2
            opacity: modelData.available ? 1 : 0.5
            Accessible.role: Accessible.Button
            Accessible.name: modelData.title + ", " + modelData.detail
            Accessible.onPressAction: wheel.chosen(index)
            Text {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: modelData.title
                elide: Text.ElideRight
                color: wheel.theme.text
                font { pixelSize: wheel.theme.normal; bold: true }
            }
            Text {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: modelData.detail
                elide: Text.ElideRight
                color: wheel.theme.faintText
                font.pixelSize: 11
            }
        }
    }
    Repeater {
        model: [{text: "+", name: "Choose files"}, {text: "≡", name: "All actions"},
                {text: "⚙", name: "Settings"}, {text: "×", name: "Close"}]
        PushButton {
            x: wheel.width / 2 - 57 + index * 30
            y: wheel.height / 2 - 73
            width: 24
            height: 24
            radius: 12
            theme: wheel.theme
            text: modelData.text
            name: modelData.name
            onClicked: [wheel.chooseFiles, wheel.showAll, wheel.openSettings, wheel.close][index]()
        }
    }
    PushButton {
        x: wheel.width / 2 - 72
        y: wheel.height / 2 + 28
        width: 144
        height: 40
        radius: 12
        theme: wheel.theme
        text: wheel.label
        onClicked: wheel.openLabel()
    }
}
