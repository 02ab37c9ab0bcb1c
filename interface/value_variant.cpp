#include "interface/value_variant.h"

#include <cmath>
#include <limits>

#include <QStringDecoder>
#include <QVariantList>

namespace tolvane::ValueVariant {

namespace {

// A byte that is no UTF-8 is always above 0x7F, so these are low surrogates without a high one.
constexpr char16_t firstByteMark = 0xDC00;

/// The length of the UTF-8 sequence at the start, or 0 when there is none.
qsizetype sequenceAt(QByteArrayView bytes) {
  constexpr qsizetype longest = 4;
  for (qsizetype length = 1; length <= std::min(longest, bytes.size()); ++length) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = decoder(bytes.first(length));
    if (!decoder.hasError() && !decoded.isEmpty()) {
      return length;
    }
  }
  return 0;
}

QString fromBytes(QByteArrayView bytes) {
  QString text;
  while (!bytes.isEmpty()) {
    const qsizetype length = sequenceAt(bytes);
    if (length == 0) {
      const auto byte = static_cast<unsigned char>(bytes.front());
      text += QChar(static_cast<char16_t>(firstByteMark + byte));
      bytes = bytes.sliced(1);
    } else {
      text += QString::fromUtf8(bytes.first(length));
      bytes = bytes.sliced(length);
    }
  }
  return text;
}

struct Reader {
  QVariant operator()(std::monostate) const { return QVariant::fromValue(nullptr); }
  QVariant operator()(bool flag) const { return flag; }
  QVariant operator()(std::int64_t number) const { return QVariant::fromValue<qlonglong>(number); }
  QVariant operator()(double number) const { return number; }
  QVariant operator()(const std::string& text) const { return fromText(text); }
  QVariant operator()(const Value::Bytes& bytes) const {
    return QByteArray(reinterpret_cast<const char*>(bytes.data()),
                      static_cast<qsizetype>(bytes.size()));
  }
  QVariant operator()(const Value::List& list) const {
    QVariantList values;
    for (const Value& value : list) {
      values.append(fromValue(value));
    }
    return values;
  }
  QVariant operator()(const Value::Map& map) const { return fromMap(map); }
};

Value numberValue(double number) {
  constexpr double exactLimit = 9007199254740992.0;  // 2^53
  if (std::floor(number) == number && std::abs(number) < exactLimit) {
    return static_cast<std::int64_t>(number);
  }
  return number;
}

}  // namespace

QString fromText(const std::string& text) {
  const QString decoded = QString::fromStdString(text);
  return decoded.toStdString() == text ? decoded : fromBytes(text);
}

std::string toText(const QString& text) {
  std::string bytes;
  for (qsizetype at = 0; at < text.size(); ++at) {
    const char16_t unit = text[at].unicode();
    if (text[at].isHighSurrogate() && at + 1 < text.size()) {
      bytes += text.mid(at, 2).toStdString();
      ++at;
    } else if (text[at].isLowSurrogate() && unit - firstByteMark <= 0xFF) {
      bytes += static_cast<char>(unit - firstByteMark);
    } else {
      bytes += QString(text[at]).toStdString();
    }
  }
  return bytes;
}

QVariant fromValue(const Value& value) {
  return std::visit(Reader(), value.variant());
}

QVariantMap fromMap(const Value::Map& map) {
  QVariantMap values;
  for (const auto& [key, value] : map) {
    values.insert(QString::fromStdString(key), fromValue(value));
  }
  return values;
}

Value toValue(const QVariant& variant) {
  switch (variant.typeId()) {
    case QMetaType::Bool:
      return variant.toBool();
    case QMetaType::Int:
    case QMetaType::LongLong:
      return static_cast<std::int64_t>(variant.toLongLong());
    case QMetaType::Double:
      return numberValue(variant.toDouble());
    case QMetaType::QString:
      return toText(variant.toString());
    case QMetaType::QVariantList:
    case QMetaType::QStringList: {
      Value::List list;
      for (const QVariant& member : variant.toList()) {
        list.push_back(toValue(member));
      }
      return list;
    }
    case QMetaType::QVariantMap: {
      Value::Map map;
      const QVariantMap members = variant.toMap();
      for (auto member = members.begin(); member != members.end(); ++member) {
        map[member.key().toStdString()] = toValue(member.value());
      }
      return map;
    }
    default:
      return nullptr;
  }
}

}  // namespace tolvane::ValueVariant
