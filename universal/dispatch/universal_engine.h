#pragma once

#include <filesystem>
#include <vector>

#include "engine/conversion_engine.h"
#include "universal/toolchain/local_toolchain.h"

/// Every conversion and tool that the native engine does not perform itself.
namespace tolvane::UniversalEngine {

/// Runs a job whose option "capabilityID" names an offer of the catalog. Inputs are never modified;
/// the job leaves either all its results or nothing. Worker thread, which it blocks.
/// @param base the engine that handed the job over; it performs the native steps of some routes.
/// @return the placed results, in order. @throws ConversionFailure, PlatformError
[[nodiscard]] std::vector<std::filesystem::path> run(const ConversionEngine& base,
                                                     const LocalToolchain& toolchain,
                                                     const Job& job);

/// The engine that performs native and universal jobs alike.
/// @param toolchain copied.
[[nodiscard]] ConversionEngine completeEngine(LocalToolchain toolchain = LocalToolchain());

}  // namespace tolvane::UniversalEngine
