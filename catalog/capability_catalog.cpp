#include "catalog/capability_catalog.h"

#include <utility>

namespace tolvane::CapabilityCatalog {

Value field(std::string_view key, std::string_view label, Value fallback, std::string_view type) {
  return Value::Map{
      {"key", key}, {"label", label}, {"default", std::move(fallback)}, {"type", type}};
}

}  // namespace tolvane::CapabilityCatalog
