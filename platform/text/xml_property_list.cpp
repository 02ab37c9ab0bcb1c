#include "platform/text/xml_property_list.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "platform/text/base64.h"
#include "platform/text/property_list_limits.h"
#include "platform/text/xml_scanner.h"

namespace tolvane {

namespace {

class XmlReader {
 public:
  explicit XmlReader(std::string_view text) : scanner_(text) {}

  [[nodiscard]] PropertyList read();

 private:
  /// How one kind of element is read, from after its opening tag to after its closing one.
  struct Element {
    std::string_view name;
    PropertyList (XmlReader::*read)(std::string_view name);
  };
  static const Element elements[];

  PropertyList value(std::string_view element);
  PropertyList text(std::string_view element) { return {scanner_.text(element)}; }
  PropertyList data(std::string_view element);
  PropertyList other(std::string_view element);
  PropertyList array(std::string_view element);
  PropertyList dictionary(std::string_view element);

  XmlScanner scanner_;
  PropertyListLimits limits_;
};

const XmlReader::Element XmlReader::elements[] = {
    {"dict", &XmlReader::dictionary},
    {"array", &XmlReader::array},
    {"string", &XmlReader::text},
    {"data", &XmlReader::data},
    {"integer", &XmlReader::other},
    {"real", &XmlReader::other},
    {"date", &XmlReader::other},
    {"true", &XmlReader::other},
    {"false", &XmlReader::other},
};

PropertyList XmlReader::read() {
  constexpr std::string_view root = "plist";
  if (scanner_.nextChild("") != root) {
    throw DamagedPropertyList();
  }
  const std::optional<std::string_view> element = scanner_.nextChild(root);
  if (!element) {
    throw DamagedPropertyList();
  }
  PropertyList list = value(*element);
  if (scanner_.nextChild(root)) {
    throw DamagedPropertyList();
  }
  return list;
}

PropertyList XmlReader::value(std::string_view element) {
  const PropertyListLimits::Value counted(limits_);
  const auto* const found =
      std::find_if(std::begin(elements), std::end(elements), [&](const Element& candidate) {
        return candidate.name == element;
      });
  if (found == std::end(elements)) {
    throw DamagedPropertyList();
  }
  return (this->*found->read)(element);
}

PropertyList XmlReader::data(std::string_view element) {
  std::optional<Bytes> bytes = Base64::decode(scanner_.text(element));
  if (!bytes) {
    throw DamagedPropertyList();
  }
  return {std::move(*bytes)};
}

PropertyList XmlReader::other(std::string_view element) {
  static_cast<void>(scanner_.text(element));
  return {PropertyList::Other()};
}

PropertyList XmlReader::array(std::string_view element) {
  PropertyList::Array array;
  while (const std::optional<std::string_view> child = scanner_.nextChild(element)) {
    array.push_back(value(*child));
  }
  return {std::move(array)};
}

PropertyList XmlReader::dictionary(std::string_view element) {
  PropertyList::Dictionary dictionary;
  while (const std::optional<std::string_view> child = scanner_.nextChild(element)) {
    if (*child != "key") {
      throw DamagedPropertyList();
    }
    std::string key = scanner_.text(*child);
    const std::optional<std::string_view> member = scanner_.nextChild(element);
    if (!member) {
      throw DamagedPropertyList();
    }
    dictionary.insert_or_assign(std::move(key), value(*member));
  }
  return {std::move(dictionary)};
}

}  // namespace

PropertyList readXmlPropertyList(std::string_view text) {
  return XmlReader(text).read();
}

}  // namespace tolvane
