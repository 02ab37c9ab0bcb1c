import QtQuick

// The interface: follows the host's events and shows one stage at a time.
FocusScope {
    id: root

    required property QtObject channel
    property string stage: "home"
    property var files: []
    property string message
    property var formats: []
    property var tools: []
    property var settings: ({permissions: {}})
    property string settingsProblem
    property var offer: null
    property string destination
    property var job: ({id: "", completed: 0, total: 0})
    property var outcome: ({status: "", outputs: [], seconds: 0})
    property int lastJob: 0

    readonly property var offers: formats.concat(tools)
    readonly property int mostWedges: 8
    readonly property var wheelOffers: offers.length <= mostWedges ? offers : mainOffers()
    readonly property bool isRunning: stage === "running"

    // What can be done comes first; the last wedge leads to the rest.
    function mainOffers() {
        var possible = formats.filter((offer) => offer.available)
        var possibleTools = tools.filter((offer) => offer.available)
        var room = mostWedges - 1
        var fromTools = Math.min(possibleTools.length, Math.max(3, room - possible.length))
        var main = possible.slice(0, room - fromTools).concat(possibleTools.slice(0, fromTools))
        return main.concat([{title: "More…", extension: (offers.length - main.length) + " others", available: true, isMore: true}])
    }

    function start() {
        channel.call("ready", {}, (state) => {
            takeSelection(state)
            settings = state.settings
            present("home")
        })
    }
    function present(next) {
        stage = next
        channel.call("presentation", {stage: next, hasFiles: offers.length > 0, actionCount: wheelOffers.length})
        pages.forceActiveFocus()
    }
    function takeSelection(state) {
        files = state.files
        message = state.message
        formats = state.formats || []
        tools = state.tools || []
    }
    function choose(picked) {
        if (!picked.isMore && picked.available) {
            offer = picked
            present("editor")
        } else {
            present("actions")
        }
    }
    function run(options) {
        var request = channel.jobOf(offer, options)
        request.id = String(++lastJob)
        request.inputs = files.map((file) => file.path)
        if (destination !== "")
            request.destination = destination
        job = {id: request.id, completed: 0, total: 0}
        present("running")
        channel.call("startJob", request, (result, error) => {
            if (error !== null)
                finish({status: "failed", outputs: [], seconds: 0, error: error.message})
        })
    }
    function finish(result) {
        outcome = result
        present("finished")
    }
    function takeSettings(result, error) {
        settingsProblem = error !== null ? error.message : ""
        if (result !== null)
            settings = result.settings || result
    }
    function openSettings() {
        settingsProblem = ""
        channel.call("settings", {}, takeSettings)
        present("settings")
    }

    Connections {
        target: root.channel
        function onEvent(event) {
            if (event.type === "selectionResolved") {
                root.takeSelection(event)
                root.present("home")
            } else if (event.type === "openPalette") {
                if (!root.isRunning)
                    root.present("home")
            } else if (event.type === "settingsClosed") {
                root.present("home")
            } else if (event.type === "permissionStateChanged") {
                root.settings = event
            } else if (event.type === "jobProgress" && event.id === root.job.id) {
                root.job = {id: event.id, completed: event.completed, total: event.total}
            } else if (event.type === "jobCompleted" && event.id === root.job.id) {
                root.finish(event)
            }
        }
    }
    Theme { id: interfaceTheme }

    FocusScope {
        id: pages
        anchors.fill: parent
        focus: true

        Stage {
            shown: root.stage === "home" && root.offers.length === 0
            sourceComponent: DropTarget {
                focus: true
                theme: interfaceTheme
                message: root.message
                onChooseFiles: root.channel.call("chooseFiles")
                onOpenSettings: root.openSettings()
                onClose: root.channel.call("hide")
            }
        }
        Stage {
            shown: root.stage === "home" && root.offers.length > 0
            sourceComponent: ActionWheel {
                focus: true
                theme: interfaceTheme
                label: root.message !== "" ? root.message : (root.files.length === 1 ? root.files[0].name : root.files.length + " files")
                entries: root.wheelOffers.map((offer) => ({title: offer.title, detail: offer.isMore ? offer.extension : "." + offer.extension, available: offer.available}))
                onChosen: (index) => root.choose(root.wheelOffers[index])
                onOpenLabel: root.present("actions")
                onShowAll: root.present("actions")
                onChooseFiles: root.channel.call("chooseFiles")
                onOpenSettings: root.openSettings()
                onClose: root.channel.call("hide")
            }
        }
        Stage {
            shown: root.stage === "actions"
            sourceComponent: OfferList {
                focus: true
                theme: interfaceTheme
                files: root.files
                message: root.message
                offers: root.offers
                onChosen: (offer) => root.choose(offer)
                onBack: root.present("home")
            }
        }
        Stage {
            shown: root.stage === "editor"
            sourceComponent: OfferEditor {
                focus: true
                theme: interfaceTheme
                offer: root.offer
                destination: root.destination
                onChooseFolder: root.channel.call("chooseFolder", {}, (folder) => {
                    if (folder !== null)
                        root.destination = folder
                })
                onRun: (options) => root.run(options)
                onBack: root.present("home")
            }
        }
        Stage {
            shown: root.stage === "running"
            sourceComponent: RunningPage {
                focus: true
                theme: interfaceTheme
                text: root.offer === null ? "" : root.offer.title
                completed: root.job.completed
                total: root.job.total
                onCancel: root.channel.call("cancelJob")
            }
        }
        Stage {
            shown: root.stage === "finished"
            sourceComponent: FinishedPage {
                focus: true
                theme: interfaceTheme
                outcome: root.outcome
                onReveal: root.channel.call("reveal", {paths: root.outcome.outputs})
                onOpen: root.channel.call("open", {paths: root.outcome.outputs})
                onCopyPath: root.channel.call("copyPath", {paths: root.outcome.outputs})
                onBack: root.present("home")
            }
        }
        Stage {
            shown: root.stage === "settings"
            sourceComponent: SettingsPage {
                focus: true
                theme: interfaceTheme
                settings: root.settings
                problem: root.settingsProblem
                onShortcutChosen: (letter) => root.channel.call("setShortcut", {key: letter}, root.takeSettings)
                onGestureToggled: (on) => root.channel.call("setGesture", {enabled: on}, root.takeSettings)
                onLoginToggled: (on) => root.channel.call("setLogin", {enabled: on}, root.takeSettings)
                onPermissionOpened: (section) => root.channel.call("openPermission", {section: section})
                onAnchoringRequested: root.channel.call("requestFileAnchoring", {}, root.takeSettings)
                onBack: root.present("home")
            }
        }
    }
}
