#pragma once

#include <array>

/// The library also has readers for text, drawings and documents; those stay blocked.
namespace tolvane::TrustedReaders {

enum class Kind { jpeg, png, gif, tiff, webp, heif, jp2 };

struct Reader {
  const char* loader;  ///< how the names of the library's loaders start
  Kind kind;
  const char* extension;
};

inline constexpr std::array<Reader, 7> all = {{{"VipsForeignLoadJpeg", Kind::jpeg, "jpeg"},
                                               {"VipsForeignLoadPng", Kind::png, "png"},
                                               {"VipsForeignLoadNsgif", Kind::gif, "gif"},
                                               {"VipsForeignLoadTiff", Kind::tiff, "tiff"},
                                               {"VipsForeignLoadWebp", Kind::webp, "webp"},
                                               {"VipsForeignLoadHeif", Kind::heif, "heif"},
                                               {"VipsForeignLoadJp2k", Kind::jp2, "jp2"}}};

}  // namespace tolvane::TrustedReaders
