#pragma once

#include <optional>
#include <string>

#include "engine/primitives/value.h"

namespace tolvane {

/// One offer for a selection: a conversion or a tool.
struct FileCapability {
  std::string id;     ///< "convert.png", "tool.trim": what a job names as its "capabilityID"
  std::string title;  ///< of its button
  std::string ext;    ///< of the output: "png", "tar.gz"
  std::string summary;
  std::optional<std::string> requirement;   ///< present: shown, yet unavailable until this is met
  std::string warning;                      ///< empty when there is nothing to be careful about
  bool combined = false;                    ///< one output from all inputs
  std::optional<std::string> nativeAction;  ///< the native action that performs this offer
  Value::List fields;                       ///< maps made by CapabilityCatalog::field

  /// The offer as the channel sends it: ten keys, absent texts as "".
  [[nodiscard]] Value json() const;
};

}  // namespace tolvane
