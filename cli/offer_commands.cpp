#include "cli/offer_commands.h"

#include <algorithm>
#include <string>
#include <utility>

#include "cli/job_run.h"
#include "cli/job_settings.h"
#include "cli/selection_query.h"

namespace tolvane {

namespace {

/// The offer with this id among those for the files; null when it is not offered.
Value offerFor(const Arguments& arguments,
               std::size_t firstFile,
               const char* group,
               const std::string& id) {
  const Value::Map resolved = resolveSelection(namedFiles(arguments, firstFile));
  const Value::List* offers = valueAt(resolved, group).list();
  if (offers == nullptr) {
    return nullptr;
  }
  const auto found = std::find_if(
      offers->begin(), offers->end(), [&](const Value& offer) { return offer["id"] == Value(id); });
  return found != offers->end() ? *found : Value();
}

/// Runs the job of an offer. One that is not there is left to the engine, which says why.
ExitStatus runOffer(const Arguments& arguments,
                    std::size_t firstFile,
                    const char* group,
                    const std::string& id) {
  const Value offer = offerFor(arguments, firstFile, group, id);
  if (offer.isNull()) {
    return runJob(arguments, "universal", firstFile, {{"capabilityID", id}});
  }
  OfferJob job = offerJob(arguments, offer);
  return runJob(arguments, job.action, firstFile, std::move(job.options));
}

}  // namespace

ExitStatus convertCommand(const Arguments& arguments) {
  if (arguments.to.empty()) {
    throw UsageError("Name what to convert to, such as --to pdf.");
  }
  return runOffer(arguments, 0, "formats", "convert." + arguments.to);
}

ExitStatus toolCommand(const Arguments& arguments) {
  if (arguments.operands.empty()) {
    throw UsageError("Name a tool and at least one file.");
  }
  return runOffer(arguments, 1, "tools", "tool." + arguments.operands.front());
}

}  // namespace tolvane
