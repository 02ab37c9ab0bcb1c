import QtQuick

// The options of one offer and where its results go.
Page {
    id: editor

    property var offer: null
    property string destination: ""
    signal chooseFolder()
    signal run(var options)

    // Another offer starts from its own defaults, also where its fields are the same.
    onOfferChanged: {
        fields.model = []
        fields.model = offer === null ? [] : fieldsOf(offer)
    }

    title: offer === null ? "" : offer.title

    // What two of the PDF tools need and the catalog leaves to the interface.
    function fieldsOf(offer) {
        if (offer.nativeAction === "split_pdf")
            return offer.fields.concat([{key: "range", label: "Pages, such as 1-3,5 (empty: all pages)", default: "", type: "text"}])
        if (offer.nativeAction === "edit_pdf")
            return offer.fields.concat([{key: "pages", label: "Pages in their new order, such as 3,1,2", default: "", type: "text", pattern: /^\s*\d+(\s*,\s*\d+)*\s*$/}])
        return offer.fields
    }
    function options() {
        var chosen = {}
        for (var i = 0; i < fields.count; ++i) {
            var field = fields.itemAt(i)
            var key = field.definition.key
            if (key === "range" && field.value.trim() === "")
                continue
            chosen[key] = key === "pages" ? field.value.split(",").map((page) => Number(page) - 1) : field.value
        }
        return chosen
    }
    function isValid() {
        for (var i = 0; i < fields.count; ++i) {
            if (!fields.itemAt(i).isValid)
                return false
        }
        return true
    }

    Text {
        width: parent.width
        wrapMode: Text.Wrap
        text: editor.offer === null ? "" : editor.offer.summary
        color: editor.theme.faintText
        font.pixelSize: editor.theme.small
    }
    Text {
        width: parent.width
        visible: text !== ""
        wrapMode: Text.Wrap
        text: editor.offer === null ? "" : editor.offer.warning
        color: editor.theme.caution
        font.pixelSize: editor.theme.small
    }
    Repeater {
        id: fields
        OptionField {
            width: parent.width
            theme: editor.theme
            definition: modelData
        }
    }
    Text {
        width: parent.width
        elide: Text.ElideMiddle
        text: "Results go " + (editor.destination === "" ? "beside the first file" : "to " + editor.destination)
        color: editor.theme.faintText
        font.pixelSize: editor.theme.small
    }
    PushButton {
        theme: editor.theme
        text: "Choose Folder…"
        onClicked: editor.chooseFolder()
    }
    footer: PushButton {
        theme: editor.theme
        text: "Start"
        isDefault: true
        onClicked: if (editor.isValid()) editor.run(editor.options())
    }
}
