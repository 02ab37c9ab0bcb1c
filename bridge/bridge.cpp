#include "bridge/bridge.h"

#include <optional>
#include <utility>

#include "bridge/result_messages.h"
#include "engine/primitives/conversion_failure.h"
#include "platform/threads/while_alive.h"

namespace tolvane {

Bridge::Bridge(BinaryMessenger& messenger,
               MainQueue& main,
               DesktopServices services,
               ConversionEngine engine,
               LocalToolchain toolchain)
    : main_(main),
      services_(std::move(services)),
      engine_(std::move(engine)),
      toolchain_(std::move(toolchain)),
      events_(messenger),
      jobs_(std::make_shared<JobControl>(engine_, worker_, main_, events_)),
      selection_(std::make_shared<Selection>(
          Selection::Surroundings{engine_, toolchain_, worker_, main_, events_})),
      settings_(services_, events_),
      palette_(std::make_shared<PaletteMessages>(
          services_, [this](Files files) { select(std::move(files)); })),
      methods_(std::make_shared<MethodTable>()) {
  methods_->addFunction("ready", [this](const Value::Map&) { return ready(); });
  jobs_->addMethods(*methods_);
  settings_.addMethods(*methods_);
  palette_->addMethods(*methods_);
  ResultMessages::addMethods(*methods_, services_);

  MethodChannel(messenger, bridgeChannelName)
      .setHandler(
          [methods = std::weak_ptr(methods_)](const MethodCall& call, const MethodReply& reply) {
            if (const auto table = methods.lock()) {
              table->dispatch(call, reply);
            }
          });
  followDesktop();
  services_.shortcut->registerKey(std::nullopt);
}

void Bridge::followDesktop() {
  services_.shortcut->onTrigger(whileAlive(methods_, [this] { open(Intake::finderSelection); }));
  services_.gesture->onTrigger(whileAlive(methods_, [this] {
    open(Intake::nothing,
         "The clicked file cannot be verified safely. Drop or choose the file to confirm it.");
  }));
  services_.palette->onFiles(
      whileAlive(methods_, [this](Palette::Files files) { select(std::move(files)); }));
  services_.palette->onSettingsDismissed(
      whileAlive(methods_, [this] { send("settingsClosed", {}); }));
}

Bridge::~Bridge() {
  jobs_->cancel();
}

void Bridge::select(Files urls, const std::optional<std::string>& message) {
  if (!hasActiveJob()) {
    selection_->select(std::move(urls), message);
  }
}

void Bridge::open(Intake intake, const std::optional<std::string>& message) {
  if (!hasActiveJob()) {
    if (intake == Intake::finderSelection) {
      takeInFinderSelection(message);
    } else {
      takeIn({}, message);
    }
  }
  showPalette();
}

void Bridge::open(Files files) {
  if (!hasActiveJob()) {
    takeIn(std::move(files), std::nullopt);
  }
  showPalette();
}

void Bridge::takeInFinderSelection(const std::optional<std::string>& message) {
  try {
    Files files = services_.finder->resolve();
    takeIn(std::move(files), message, services_.finder->selectedFileFrame());
  } catch (const ConversionFailure& failure) {
    takeIn({}, failure.errorDescription());
  }
}

void Bridge::takeIn(Files files,
                    const std::optional<std::string>& message,
                    const std::optional<Rectangle>& fileFrame) {
  services_.palette->beginInvocation(fileFrame);
  select(std::move(files), message);
}

void Bridge::showPalette() const {
  send("openPalette", {{"reduceMotion", services_.permissions->state().reduceMotion}});
  services_.palette->show();
}

void Bridge::send(std::string_view type, Value::Map payload) const {
  events_.send(type, std::move(payload));
}

Value Bridge::ready() {
  events_.open();
  Value::Map reply = selection_->state();
  reply["version"] = 1;
  reply["settings"] = settings_.settings();
  return reply;
}

bool Bridge::prepareToQuit(std::function<void()> completion) {
  if (!hasActiveJob()) {
    return false;
  }
  jobs_->cancel();
  whenWorkIsDone(std::move(completion));
  return true;
}

void Bridge::whenWorkIsDone(std::function<void()> done) {
  // The worker takes its tasks in turn, so it comes to this one when the others have returned.
  worker_.post([&main = main_, done = std::move(done)]() mutable { main.post(std::move(done)); });
}

}  // namespace tolvane
