#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// Parts of a file name. The extension is what follows the last dot of the last component; a
/// leading dot starts none, and neither does a last one ("Notes." has no extension).
namespace tolvane::FileNames {

[[nodiscard]] std::string extension(const std::filesystem::path& path);
/// ASCII letters lowered, other bytes as they are.
[[nodiscard]] std::string lowerExtension(const std::filesystem::path& path);
/// The last component without its extension and the dot before it.
[[nodiscard]] std::string stem(const std::filesystem::path& path);

/// @return whether the text has the form of an address, "scheme://...".
[[nodiscard]] bool isAddress(std::string_view text);
/// @return the path in an address of a file on this machine, "file:///home/a%20b"; nullopt for
/// others.
[[nodiscard]] std::optional<std::string> localPath(std::string_view address);
/// The reverse: the address of an absolute path. Holds no byte that has a meaning in addresses.
[[nodiscard]] std::string localAddress(const std::filesystem::path& path);

/// What a word names that is handed over from outside: the path in a local address, else the path
/// itself. Another address stays what it is, so that it is refused as one.
/// @param folder of a path that is not absolute.
[[nodiscard]] std::filesystem::path handedOver(std::string_view word,
                                               const std::filesystem::path& folder);

[[nodiscard]] std::string lower(std::string_view text);
[[nodiscard]] std::string upper(std::string_view text);

}  // namespace tolvane::FileNames
