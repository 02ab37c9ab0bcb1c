#pragma once

#include "cli/arguments.h"
#include "engine/primitives/value.h"

namespace tolvane {

/// The options of a native action from the command line's --set KEY=VALUE, each of its key's type.
/// @throws UsageError for a key that no action has and for a value of the wrong type.
[[nodiscard]] Value::Map actionOptions(const Arguments& arguments);

/// The options of an offer from the command line's --set KEY=VALUE, each of its field's type. Where
/// the offer has no fields, a value is read as JSON where it is JSON, else as text.
/// @param fields of the offer, as the channel sends them; null when there is no such offer.
/// @throws UsageError for a key that is none of the fields' and for a value that is not of its
/// field's type.
[[nodiscard]] Value::Map offerOptions(const Arguments& arguments, const Value& fields);

}  // namespace tolvane
