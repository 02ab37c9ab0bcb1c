#include "bridge/selection.h"

#include <exception>
#include <utility>

#include "catalog/capability_catalog.h"
#include "engine/primitives/failure_text.h"
#include "engine/primitives/limits.h"

namespace tolvane {

namespace {

Value::List mapsOf(const std::vector<FileCapability>& offers) {
  Value::List maps;
  maps.reserve(offers.size());
  for (const FileCapability& offer : offers) {
    maps.push_back(offer.json());
  }
  return maps;
}

}  // namespace

void Selection::select(std::vector<std::filesystem::path> urls,
                       const std::optional<std::string>& message) {
  intake_.inspection->cancel();
  intake_ = {intake_.selectionRevision + 1};
  const Intake intake = intake_;
  files_.clear();
  formats_.clear();
  tools_.clear();
  selectionMessage_ = message.value_or("Choose or drop a file to get started.");
  publish();
  if (urls.size() > Limits::maxInputFiles) {
    selectionMessage_ = "Select at most 100 files.";
    surroundings_.events.send("selectionResolved",
                              {{"files", files_}, {"message", selectionMessage_}});
  } else if (!urls.empty()) {
    inspectInTheBackground(intake, std::move(urls));
  }
}

void Selection::inspectInTheBackground(const Intake& intake,
                                       std::vector<std::filesystem::path> urls) {
  surroundings_.worker.post([&engine = surroundings_.engine,
                             &main = surroundings_.main,
                             selection = weak_from_this(),
                             intake,
                             urls = std::move(urls)] {
    main.post([selection,
               revision = intake.selectionRevision,
               inspection = inspect(engine, urls, *intake.inspection)] {
      if (const auto present = selection.lock()) {
        present->apply(revision, inspection);
      }
    });
  });
}

Selection::Inspection Selection::inspect(const ConversionEngine& engine,
                                         const std::vector<std::filesystem::path>& urls,
                                         const CancellationToken& token) {
  Inspection inspection;
  for (const std::filesystem::path& url : urls) {
    if (token.isCancelled()) {
      break;  // nobody waits for the rest
    }
    try {
      inspection.files.push_back(engine.inspect(url));
    } catch (const std::exception& failure) {
      if (++inspection.failures == 1) {
        inspection.firstFailure = FailureText::of(failure);
      }
    }
  }
  return inspection;
}

void Selection::apply(std::int64_t revision, const Inspection& inspection) {
  if (revision != intake_.selectionRevision) {
    return;
  }
  for (const FileInfo& file : inspection.files) {
    files_.push_back(file.json());
  }
  formats_ = mapsOf(CapabilityCatalog::formats(inspection.files, surroundings_.toolchain));
  tools_ = mapsOf(CapabilityCatalog::tools(inspection.files, surroundings_.toolchain));
  selectionMessage_ =
      inspection.failures > 0
          ? std::to_string(inspection.failures) + " file(s) unavailable. " + inspection.firstFailure
          : "";
  publish();
}

void Selection::publish() const {
  surroundings_.events.send("selectionResolved", state());
}

Value::Map Selection::state() const {
  return {
      {"files", files_}, {"message", selectionMessage_}, {"formats", formats_}, {"tools", tools_}};
}

}  // namespace tolvane
