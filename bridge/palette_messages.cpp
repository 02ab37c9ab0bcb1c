#include "bridge/palette_messages.h"

#include <string>
#include <utility>

namespace tolvane {

void PaletteMessages::addMethods(MethodTable& table) {
  table.addFunction("presentation", [this](const Value::Map& arguments) {
    present(arguments);
    return Value();
  });
  table.addFunction("hide", [this](const Value::Map&) {
    services_.palette->hide();
    return Value();
  });
  table.add("chooseFiles",
            [this](const Value::Map&, const MethodReply& reply) { chooseFiles(reply); });
  table.add("chooseFolder",
            [this](const Value::Map&, const MethodReply& reply) { chooseFolder(reply); });
}

void PaletteMessages::present(const Value::Map& arguments) const {
  const std::string* stage = valueAt(arguments, "stage").text();
  services_.palette->present({stage != nullptr ? *stage : "home",
                              valueAt(arguments, "hasFiles").flag().value_or(false),
                              valueAt(arguments, "actionCount").integer().value_or(0)});
}

template <typename Chosen>
std::function<void(std::optional<Chosen>)> PaletteMessages::afterPanel(
    const MethodReply& reply, std::function<Value(const std::optional<Chosen>&)> take) const {
  services_.palette->suspendDismissal();
  return [self = weak_from_this(), reply, take = std::move(take)](
             const std::optional<Chosen>& chosen) {
    if (const auto messages = self.lock()) {
      messages->services_.palette->resumeDismissal();
      Value answer = take(chosen);
      messages->services_.palette->show();
      reply.success(std::move(answer));
    }
  };
}

void PaletteMessages::chooseFiles(const MethodReply& reply) const {
  services_.panels->chooseFiles(afterPanel<Files>(reply, [this](const std::optional<Files>& files) {
    if (files) {
      filesChosen_(*files);
    }
    return Value();
  }));
}

void PaletteMessages::chooseFolder(const MethodReply& reply) const {
  using Folder = std::filesystem::path;
  services_.panels->chooseFolder(afterPanel<Folder>(reply, [](const std::optional<Folder>& folder) {
    return folder ? Value(folder->string()) : Value();
  }));
}

}  // namespace tolvane
