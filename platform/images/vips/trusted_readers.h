#pragma once

#include <array>

/// The library also has readers for text, drawings, documents and measurements. Those stay blocked,
/// and are never asked whether a file is theirs: some unpack a whole gzip file to find out.
namespace tolvane::TrustedReaders {

enum class Kind { jpeg, png, gif, tiff, webp, heif, jp2 };

struct Reader {
  const char* loaders;    ///< how the names of the library's loaders start
  const char* operation;  ///< the loader that reads from a source
  Kind kind;
  const char* extension;
};

inline constexpr std::array<Reader, 7> all = {
    {{"VipsForeignLoadJpeg", "jpegload_source", Kind::jpeg, "jpeg"},
     {"VipsForeignLoadPng", "pngload_source", Kind::png, "png"},
     {"VipsForeignLoadNsgif", "gifload_source", Kind::gif, "gif"},
     {"VipsForeignLoadTiff", "tiffload_source", Kind::tiff, "tiff"},
     {"VipsForeignLoadWebp", "webpload_source", Kind::webp, "webp"},
     {"VipsForeignLoadHeif", "heifload_source", Kind::heif, "heif"},
     {"VipsForeignLoadJp2k", "jp2kload_source", Kind::jp2, "jp2"}}};

}  // namespace tolvane::TrustedReaders
