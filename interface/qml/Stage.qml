import QtQuick

// One of the interface's pages: made when it is first shown, so that the start waits for none, and
// kept, with what was typed into it.
Loader {
    property bool shown

    anchors.fill: parent
    active: false
    visible: shown
    focus: shown
    onShownChanged: {
        if (!shown)
            return
        active = true
        // Not of the button that had the keyboard when the page was shown before.
        if (item !== null)
            item.focus = true
    }
}
