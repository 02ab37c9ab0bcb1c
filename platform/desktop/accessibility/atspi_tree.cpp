#include "platform/desktop/accessibility/atspi_tree.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/desktop/accessibility/tree_reader.h"
#include "platform/files/file_names.h"
#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

/// What the elements of one application share.
struct Application {
  std::shared_ptr<AccessibleQuestions> questions;
  std::chrono::milliseconds messagingTimeout{0};
  AccessibleReference root;
  std::optional<ShownFile> shown;
  FromPrimary fromPrimary;
  bool isRelativeToWindow = false;  ///< how extents are told
};

class AtspiElement final : public AccessibleElement {
 public:
  AtspiElement(std::shared_ptr<const Application> application, AccessibleReference reference)
      : application_(std::move(application)), reference_(std::move(reference)) {}

  [[nodiscard]] std::optional<std::string> url() const override {
    return isShownFile() ? std::optional(FileNames::localAddress(application_->shown->file))
                         : std::nullopt;
  }
  [[nodiscard]] std::optional<bool> isSelected() const override {
    const AccessibleAnswer answer = ask(Ask::states);
    return answer.isAnswered
               ? std::optional(AccessibleStates{answer.number}.has(AccessibleStates::selected))
               : std::nullopt;
  }
  [[nodiscard]] std::optional<std::string> title() const override {
    const AccessibleAnswer answer = ask(Ask::name);
    return answer.isAnswered ? std::optional(answer.text) : std::nullopt;
  }
  [[nodiscard]] std::optional<Point> position() const override {
    const AccessibleAnswer& answer = extents();
    if (!answer.isAnswered || (application_->isRelativeToWindow && !application_->shown)) {
      return std::nullopt;
    }
    const Point origin =
        application_->isRelativeToWindow ? application_->shown->windowOrigin : Point();
    // Where screens are scaled, GTK 3 scales their corners as well: right only on one at (0, 0).
    return application_->fromPrimary({origin.x + answer.extents.x, origin.y + answer.extents.y});
  }
  [[nodiscard]] std::optional<Size> size() const override {
    const AccessibleAnswer& answer = extents();
    return answer.isAnswered ? std::optional(Size{answer.extents.width, answer.extents.height})
                             : std::nullopt;
  }
  [[nodiscard]] std::vector<Reference> children(std::size_t limit) const override {
    return elements(ask(Ask::children).references, limit);
  }
  [[nodiscard]] std::vector<Reference> selectedChildren(std::size_t limit) const override {
    const auto count = static_cast<std::size_t>(ask(Ask::selectedCount).number);
    std::vector<AccessibleReference> selected;
    for (std::size_t i = 0; i < std::min(count, limit); ++i) {
      for (AccessibleReference& child : ask(Ask::selectedChild, static_cast<int>(i)).references) {
        selected.push_back(std::move(child));
      }
    }
    return elements(selected, limit);
  }
  [[nodiscard]] Reference focusedElement() const override {
    return reference_ == application_->root && application_->shown
               ? std::make_shared<AtspiElement>(application_, application_->shown->element)
               : nullptr;
  }

 private:
  [[nodiscard]] bool isShownFile() const {
    return application_->shown && application_->shown->element == reference_;
  }

  /// Asked once: position and size are wanted of the same moment.
  [[nodiscard]] const AccessibleAnswer& extents() const {
    if (!extents_) {
      extents_ = ask(Ask::extents);
    }
    return *extents_;
  }

  [[nodiscard]] AccessibleAnswer ask(Ask what, int index = 0) const {
    const auto deadline =
        AccessibleQuestions::Deadline::clock::now() + application_->messagingTimeout;
    try {
      return application_->questions->ask({{reference_, what, index, {}}}, deadline).front();
    } catch (const PlatformError&) {  // the bus went away
      return {};
    }
  }

  [[nodiscard]] std::vector<Reference> elements(const std::vector<AccessibleReference>& references,
                                                std::size_t limit) const {
    std::vector<Reference> found;
    for (std::size_t i = 0; i < std::min(references.size(), limit); ++i) {
      if (!references[i].isNull()) {
        found.push_back(std::make_shared<AtspiElement>(application_, references[i]));
      }
    }
    return found;
  }

  std::shared_ptr<const Application> application_;
  AccessibleReference reference_;
  mutable std::optional<AccessibleAnswer> extents_;
};

}  // namespace

AtspiTree::AtspiTree(std::shared_ptr<AccessibleQuestions> questions,
                     std::shared_ptr<std::optional<ShownFile>> shown,
                     FromPrimary fromPrimary)
    : questions_(std::move(questions)),
      shown_(std::move(shown)),
      fromPrimary_(std::move(fromPrimary)) {}

AccessibleElement::Reference AtspiTree::application(std::int64_t processIdentifier,
                                                    std::chrono::milliseconds messagingTimeout) {
  const auto deadline = AccessibleQuestions::Deadline::clock::now() + messagingTimeout;
  try {
    const auto root = TreeReader(*questions_, deadline).application(processIdentifier);
    if (!root) {
      return nullptr;
    }
    auto application = std::make_shared<Application>();
    application->questions = questions_;
    application->messagingTimeout = messagingTimeout;
    application->root = *root;
    application->fromPrimary = fromPrimary_;
    if (*shown_ && (*shown_)->processIdentifier == processIdentifier) {
      application->shown = *shown_;
    }
    // GTK 4 calls itself "GTK", its predecessors "gtk".
    application->isRelativeToWindow =
        questions_->ask({{*root, Ask::toolkit, 0, {}}}, deadline).front().text == "GTK";
    return std::make_shared<AtspiElement>(std::move(application), *root);
  } catch (const PlatformError&) {
    return nullptr;
  }
}

}  // namespace tolvane
