#pragma once

#include <cstddef>
#include <string_view>

/// User-perceived characters (extended grapheme clusters, Unicode Standard Annex 29).
namespace tolvane::TextClusters {

/// Whether an ASCII character is a cluster by itself: neither does what follows join it, such as a
/// combining mark, nor does it join what precedes. Control characters never join anything; the pair
/// CR LF, which is one cluster, is the caller's to see.
/// @param text well-formed UTF-8.
/// @param position of an ASCII character.
[[nodiscard]] bool isAlone(std::string_view text, std::size_t position);

}  // namespace tolvane::TextClusters
