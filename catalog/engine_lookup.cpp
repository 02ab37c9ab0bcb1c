#include "catalog/engine_lookup.h"

#include <exception>
#include <system_error>
#include <utility>

#include "engine/primitives/cancellation_token.h"
#include "platform/files/bytes.h"
#include "universal/toolchain/temporary_ground.h"

namespace tolvane {

EngineLookup::EngineLookup(const LocalToolchain& toolchain, ExistenceTest applicationExists)
    : toolchain_(toolchain), applicationExists_(std::move(applicationExists)) {}

bool EngineLookup::hasEngine(std::string_view engine) {
  return remembered(engine, [&] { return toolchain_.find(engine).has_value(); });
}

bool EngineLookup::hasApplication(std::string_view bundle) {
  return remembered(bundle, [&] { return applicationExists_(bundle); });
}

bool EngineLookup::drawsVectorImages() {
  return hasEngine("rsvg-convert") || !toolchain_.usesAdapter("magick");
}

bool EngineLookup::unpacksRar() {
  return remembered("7zz with RAR", [this] { return listsRarCodec(); });
}

bool EngineLookup::listsRarCodec() const try {
  constexpr double timeout = 10;  // seconds
  const TemporaryGround ground("tolvane-engine");
  const Bytes printed =
      toolchain_.run({.name = "7zz", .arguments = {"i"}, .in = ground.path(), .timeout = timeout},
                     CancellationToken());
  // The formats come first; one that is listed there may still have no codec.
  const std::string_view all = asText(printed);
  const std::size_t codecs = all.find("\nCodecs:");
  return codecs != std::string_view::npos &&
         all.substr(codecs).find(" Rar5") != std::string_view::npos;
} catch (const std::exception&) {
  return false;  // the engine does not run here, let alone unpack
}

template <typename Question>
bool EngineLookup::remembered(std::string_view program, const Question& ask) {
  if (const auto known = answers_.find(program); known != answers_.end()) {
    return known->second;
  }
  return answers_.emplace(program, ask()).first->second;
}

bool EngineLookup::standsOnDisk(const std::filesystem::path& path) {
  std::error_code unreadable;  // a place that cannot be looked at counts as empty
  return std::filesystem::exists(path, unreadable);
}

}  // namespace tolvane
