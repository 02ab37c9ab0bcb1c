#include "cli/offers_command.h"

#include <string>
#include <string_view>

#include <fmt/format.h>

#include "cli/console.h"
#include "cli/selection_query.h"
#include "engine/json/value_json.h"

namespace tolvane {

namespace {

void printField(const Value& field) {
  Console::print(fmt::format("      {} = {}   {}\n",
                             *field["key"].text(),
                             ValueJson::write(field["default"]),
                             *field["label"].text()));
}

void printOffer(const Value& offer, std::string_view idPrefix) {
  const std::string name = offer["id"].text()->substr(idPrefix.size());
  Console::print(
      fmt::format("  {:<10} {} ({})\n", name, *offer["title"].text(), *offer["summary"].text()));
  for (const char* key : {"requirement", "warning"}) {
    if (const std::string* text = offer[key].text(); !text->empty()) {
      Console::print(fmt::format("      {}\n", *text));
    }
  }
  for (const Value& field : *offer["fields"].list()) {
    printField(field);
  }
}

void printOffers(const char* title, const Value& offers, std::string_view idPrefix) {
  if (offers.list() == nullptr || offers.list()->empty()) {
    return;
  }
  Console::print(fmt::format("\n{}\n", title));
  for (const Value& offer : *offers.list()) {
    printOffer(offer, idPrefix);
  }
}

void print(const Value::Map& resolved) {
  for (const Value& file : *valueAt(resolved, "files").list()) {
    Console::print(fmt::format(
        "{}: {}, {}\n", *file["path"].text(), *file["kind"].text(), *file["detail"].text()));
  }
  if (const std::string& message = *valueAt(resolved, "message").text(); !message.empty()) {
    Console::say(fmt::format("{}\n", message));
  }
  printOffers("Conversions", valueAt(resolved, "formats"), "convert.");
  printOffers("Tools", valueAt(resolved, "tools"), "tool.");
}

}  // namespace

ExitStatus offersCommand(const Arguments& arguments) {
  Value::Map resolved = resolveSelection(namedFiles(arguments, 0));
  const bool isComplete = valueAt(resolved, "message") == Value("");
  if (arguments.json) {
    resolved.erase("type");
    resolved.erase("version");
    Console::print(fmt::format("{}\n", ValueJson::write(resolved)));
  } else {
    print(resolved);
  }
  return isComplete ? ExitStatus::done : ExitStatus::failed;
}

}  // namespace tolvane
