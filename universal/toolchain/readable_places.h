#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

/// What an engine may read besides its inputs and the job's folder.
namespace tolvane::ReadablePlaces {

/// Programs, libraries, fonts and settings of the system that the engine needs; nothing of the
/// user's but the fonts that he installed. Places that do not exist may be among them.
/// @param program where the engine stands; absolute.
[[nodiscard]] std::vector<std::filesystem::path> of(std::string_view engine,
                                                    const std::filesystem::path& program);

/// @return the folder of the user's data, of which engines that draw text may read the part with
/// his fonts; empty when the environment names none.
[[nodiscard]] std::filesystem::path ownData();

}  // namespace tolvane::ReadablePlaces
