#include "bridge/palette_messages.h"

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

void PaletteMessages::chooseFiles(const MethodReply& reply) const {
  services_.palette->suspendDismissal();
  services_.panels->chooseFiles([self = weak_from_this(), reply](const auto& files) {
    if (const auto messages = self.lock()) {
      messages->services_.palette->resumeDismissal();
      if (files) {
        messages->filesChosen_(*files);
      }
      messages->services_.palette->show();
      reply.success();
    }
  });
}

void PaletteMessages::chooseFolder(const MethodReply& reply) const {
  services_.palette->suspendDismissal();
  services_.panels->chooseFolder([self = weak_from_this(), reply](const auto& folder) {
    if (const auto messages = self.lock()) {
      messages->services_.palette->resumeDismissal();
      messages->services_.palette->show();
      reply.success(folder ? Value(folder->string()) : Value());
    }
  });
}

}  // namespace tolvane
