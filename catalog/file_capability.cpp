#include "catalog/file_capability.h"

namespace tolvane {

Value FileCapability::json() const {
  return Value::Map{{"id", id},
                    {"title", title},
                    {"extension", ext},
                    {"summary", summary},
                    {"available", !requirement.has_value()},
                    {"requirement", requirement.value_or("")},
                    {"warning", warning},
                    {"combined", combined},
                    {"nativeAction", nativeAction.value_or("")},
                    {"fields", fields}};
}

}  // namespace tolvane
