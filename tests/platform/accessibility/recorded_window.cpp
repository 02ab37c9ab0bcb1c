#include "tests/platform/accessibility/recorded_window.h"

#include <functional>
#include <stdexcept>
#include <thread>

#include "tests/support/temporary_folder.h"

namespace tolvane::support {

namespace {

using nlohmann::json;

std::string replaced(std::string text, const std::string& word, const std::string& by) {
  for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at + by.size())) {
    text.replace(at, word.size(), by);
  }
  return text;
}

json* find(json& node, const std::function<bool(const json&)>& isWanted) {
  if (isWanted(node)) {
    return &node;
  }
  if (node.contains("children")) {
    for (json& child : node["children"]) {
      if (json* const found = find(child, isWanted)) {
        return found;
      }
    }
  }
  return nullptr;
}

AccessibleReference reference(const json& id) {
  return {":1.1", "/" + id.dump()};
}

/// The numbers of a list, or of the elements in it.
std::vector<AccessibleReference> references(const json& node, const char* key) {
  std::vector<AccessibleReference> found;
  if (node.contains(key)) {
    for (const json& id : node[key]) {
      found.push_back(reference(id.is_object() ? id["id"] : id));
    }
  }
  return found;
}

AccessibleAnswer answerOf(const json& node, const AccessibleQuestion& question) {
  static const std::map<Ask, const char*> keys = {{Ask::role, "role"},
                                                  {Ask::states, "states"},
                                                  {Ask::name, "name"},
                                                  {Ask::text, "text"},
                                                  {Ask::toolkit, "toolkit"},
                                                  {Ask::children, "children"},
                                                  {Ask::parentRow, "parents"},
                                                  {Ask::selectedCount, "selected"},
                                                  {Ask::selectedChild, "selected"},
                                                  {Ask::extents, "extents"},
                                                  {Ask::processIdentifier, "id"}};
  const char* const key = keys.at(question.ask);
  AccessibleAnswer answer;
  answer.isAnswered = node.contains(key);
  if (question.ask == Ask::processIdentifier) {
    answer.number = RecordedWindow::process;
  } else if (!answer.isAnswered) {
    return answer;
  } else if (node[key].is_string()) {
    answer.text = node[key];
  } else if (question.ask == Ask::role) {
    answer.number = node[key];
  } else if (question.ask == Ask::states) {
    for (const unsigned state : node[key]) {
      answer.number |= std::uint64_t{1} << state;
    }
  } else if (question.ask == Ask::extents) {
    answer.extents = {node[key][0], node[key][1], node[key][2], node[key][3]};
  } else {
    answer.references = references(node, key);
    answer.number = answer.references.size();
  }
  if (question.ask == Ask::selectedChild) {
    answer.references = {answer.references.at(static_cast<std::size_t>(question.index))};
  }
  return answer;
}

}  // namespace

RecordedWindow::RecordedWindow(const std::string& name, const std::filesystem::path& home)
    : application(
          json::parse(replaced(contentOf(std::filesystem::path(RECORDED_TREES) / (name + ".json")),
                               "HOME",
                               home.filename()))),
      openWindows{{"/window/1", {"file://" + (home / "files").string()}}} {}

std::vector<AccessibleAnswer> RecordedWindow::ask(const std::vector<AccessibleQuestion>& questions,
                                                  Deadline deadline) {
  std::map<std::string, const json*> elements;
  find(application, [&elements](const json& node) {
    elements["/" + node["id"].dump()] = &node;
    return false;
  });
  std::vector<AccessibleAnswer> answers;
  for (const AccessibleQuestion& question : questions) {
    const auto found = elements.find(question.element.path);
    if (found == elements.end()) {
      answers.push_back(answerOfSession(question));
    } else if (unanswered.contains(question.ask)) {
      std::this_thread::sleep_until(deadline);
      answers.emplace_back();
    } else {
      extentsAsked += question.ask == Ask::extents ? 1 : 0;
      answers.push_back(answerOf(*found->second, question));
    }
  }
  return answers;
}

json& RecordedWindow::element(const std::string& key, const json& value) {
  json* const found =
      find(application, [&](const json& node) { return node.contains(key) && node[key] == value; });
  if (found == nullptr) {
    throw std::invalid_argument("The recorded window has no such element.");
  }
  return *found;
}

AccessibleAnswer RecordedWindow::answerOfSession(const AccessibleQuestion& question) const {
  AccessibleAnswer answer;
  answer.isAnswered = true;
  if (question.ask == Ask::children) {
    answer.references = {reference(application["id"])};
  } else if (question.ask == Ask::processIdentifier) {
    answer.number = process;
  } else if (question.ask == Ask::openLocations) {
    answer.locations = openWindows;
  } else if (question.ask == Ask::hasOpenLocation) {
    answer.number = confirmsLocations ? 1 : 0;
  } else {
    answer.isAnswered = false;
  }
  return answer;
}

}  // namespace tolvane::support
