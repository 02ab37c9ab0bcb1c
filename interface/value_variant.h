#pragma once

#include <QVariant>

#include "engine/primitives/value.h"

/// Values of the channel as the interface's script knows them: lists, maps, texts, numbers and
/// flags. Bytes are byte arrays.
namespace tolvane::ValueVariant {

[[nodiscard]] QVariant fromValue(const Value& value);
[[nodiscard]] QVariantMap fromMap(const Value::Map& map);
/// A number of the script with nothing behind its point becomes an integer. What the channel does
/// not know becomes null.
[[nodiscard]] Value toValue(const QVariant& variant);

/// Text of the channel holds paths, which are bytes. Those that are no UTF-8 become unpaired
/// surrogates, which come back as the same bytes.
[[nodiscard]] QString fromText(const std::string& text);
[[nodiscard]] std::string toText(const QString& text);

}  // namespace tolvane::ValueVariant
