#include "platform/text/property_list.h"

#include <chrono>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/words.h"

namespace tolvane {
namespace {

using namespace std::string_literals;

std::optional<PropertyList> parse(std::string_view content) {
  return PropertyList::parse(asBytes(content));
}

/// One line that shows the whole list.
std::string shown(const PropertyList& list) {
  if (const std::string* text = list.text()) {
    return "'" + *text + "'";
  }
  if (const Bytes* bytes = list.bytes()) {
    return "<" + std::string(bytes->begin(), bytes->end()) + ">";
  }
  std::string result;
  if (const auto* array = std::get_if<PropertyList::Array>(&list.value)) {
    for (const PropertyList& member : *array) {
      result += shown(member) + ",";
    }
    return "(" + result + ")";
  }
  if (list.dictionary() == nullptr) {
    return "other";
  }
  for (const auto& [key, member] : *list.dictionary()) {
    result += key + "=" + shown(member) + ";";
  }
  return "{" + result + "}";
}

std::string shown(std::string_view content) {
  const std::optional<PropertyList> list = parse(content);
  return list ? shown(*list) : "refused";
}

/// A binary list of the given objects, the first of them at the top.
std::string binary(const std::vector<std::string>& objects, char referenceSize = 1) {
  std::string file = "bplist00";
  std::string offsets;
  const auto append = [](std::string& target, std::size_t number, int size) {
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8) {
      target += static_cast<char>(number >> shift & 0xFF);
    }
  };
  for (const std::string& object : objects) {
    append(offsets, file.size(), 4);
    file += object;
  }
  const std::size_t table = file.size();
  file += offsets + std::string(6, '\0') + '\4' + referenceSize;
  append(file, objects.size(), 8);
  append(file, 0, 8);
  append(file, table, 8);
  return file;
}

std::string utf16(std::string_view ascii) {
  std::string units = "\xFF\xFE";
  for (const char letter : ascii) {
    units += letter;
    units += '\0';
  }
  return units;
}

std::string xml(const std::string& content) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//>//\" "
         "\"http://x\">\n"
         "<plist version=\"1.0\">" +
         content + "</plist>\n";
}

std::string declared(const std::string& encoding, const std::string& text) {
  return "<?xml version=\"1.0\" " + encoding + "?><plist><string>" + text + "</string></plist>";
}

const std::string everything =
    "<dict><key>a</key><string>x</string><!-- c --><key>b</key><data>aGkh\n\t</data>"
    "<key>c</key><array><true/><integer>1</integer><date>2001</date><real>1</real><false/></array>"
    "</dict>";

const std::tuple<std::string, std::string, std::string> listCases[] = {
    {"every element", xml(everything), "{a='x';b=<hi!>;c=(other,other,other,other,other,);}"},
    {"UTF-8 mark", "\xEF\xBB\xBF" + xml("<string>é</string>"), "'é'"},
    {"UTF-16", utf16(xml("<string>a</string>")), "'a'"},
    {"no declaration", "\n<plist><string/></plist>", "''"},
    {"empty elements",
     xml("<array><dict/><data/><array/><string></string></array>"),
     "({},<>,(),'',)"},
    {"entities", xml("<string>&lt;&gt;&amp;&quot;&apos;&#233;&#x1F600;</string>"), "'<>&\"'é😀'"},
    {"character data", xml("<string>a<![CDATA[<&b;]]>c</string>"), "'a<&b;c'"},
    {"blanks in text stay", xml("<string> a\n b </string>"), "' a\n b '"},
    {"last of equal keys",
     xml("<dict><key>a</key><true/><key>a</key><string>2</string></dict>"),
     "{a='2';}"},
    {"definitions are passed over",
     "<!DOCTYPE plist [<!-- don't ]> --><!ENTITY a \"]>\"><!ELEMENT b (c)>]>"
     "<plist><string>x</string></plist>",
     "'x'"},
    {"defined entity",
     "<!DOCTYPE plist [<!ENTITY a \"b\">]><plist><string>&a;</string></plist>",
     "refused"},
    {"surrogate by number", xml("<string>&#xD800;</string>"), "refused"},
    {"number out of range", xml("<string>&#1114112;</string>"), "refused"},
    {"damaged data", xml("<data>a*b=</data>"), "refused"},
    {"unpadded data", xml("<data>aGk</data>"), "<hi>"},
    {"data of one digit", xml("<data>aGkha</data>"), "refused"},
    {"unknown element", xml("<set/>"), "refused"},
    {"wrong end", xml("<array><string>a</array></string>"), "refused"},
    {"value without key", xml("<dict><true/></dict>"), "refused"},
    {"key without value", xml("<dict><key>a</key></dict>"), "refused"},
    {"text between elements", xml("<dict>a</dict>"), "refused"},
    {"two values", xml("<true/><true/>"), "refused"},
    {"no value", xml(""), "refused"},
    {"no list", "<html></html>", "refused"},
    {"not UTF-8", xml("<string>\xE9</string>"), "refused"},
    {"Latin 1", declared("encoding=\"ISO-8859-1\"", "\xE9\x92"), "'é\u0092'"},
    {"Windows Latin", declared("encoding = 'Windows-1252' ", "\xE9\x92"), "'é’'"},
    {"Mac Roman", declared("encoding=\"macintosh\"", "\x8E\xD5"), "'é’'"},
    {"no name", declared("encoding=", "\xE9"), "refused"},
    {"unfinished name", declared("encoding=\"macintosh", "\xE9"), "refused"},
    {"Latin 1 behind a UTF-8 mark",
     "\xEF\xBB\xBF" + declared("encoding=\"ISO-8859-1\"", "é"),
     "'é'"},
    {"dictionary",
     "// c\n{ \"UTI Data\" = { a.b-c = \"hi\"; }; /* ; */ 'd'=e; }\n",
     "{UTI Data={a.b-c='hi';};d='e';}"},
    {"list", "(a, (b), <6869 2 1>, {}, )", "refused"},
    {"nested list", "(a, (b), <6869 21>, {}, )", "('a',('b',),<hi!>,{},)"},
    {"data at the top", "<6869>", "<hi>"},
    {"letters escaped", R"("\n\t\"\\\'\q")", "'\n\t\"\\'q'"},
    {"units escaped", R"("\U00e9\uD83D\uDE00\U41g")", "'é😀Ag'"},
    {"lone surrogate", R"("\Ud83dx")", "'\uFFFDx'"},
    {"octal", R"("\101\12\351\12x")", "'A\nØ\nx'"},
    {"raw characters", "\"é\"", "'é'"},
    {"UTF-16", utf16("{a=b;}"), "{a='b';}"},
    {"word", "hello", "'hello'"},
    {"address", "http://a.b/c", "'http://a.b/c'"},
    {"prose", "just text", "refused"},
    {"JSON", "{\"UTI-Data\":{}}", "refused"},
    {"no semicolon", "{a=b}", "refused"},
    {"no braces",
     "// c\n\"UTI-Data\" = { a = <6869>; };\nb = (c);\n",
     "{UTI-Data={a=<hi>;};b=('c',);}"},
    {"no braces, no semicolon", "a = b", "refused"},
    {"no opening brace", "a = b; }", "refused"},
    {"members after braces", "{ a = b; } c = d;", "refused"},
    {"data as a key", "<6869> = a;", "refused"},
    {"no comma", "(a b)", "refused"},
    {"unfinished text", "{a=\"b;}", "refused"},
    {"unfinished comment", "a /* b", "refused"},
    {"half a byte", "<686>", "refused"},
    {"empty", "", "refused"},
    {"blanks", " \n", "refused"},
    {"dictionary",
     binary({"\xD2\1\2\3\4"s, "\x51k", "\x51m", "\x42hi", "\x09"}),
     "{k=<hi>;m=other;}"},
    {"UTF-16", binary({"\x63\0\xE9\xD8\x3D\xDE\0"s}), "'é😀'"},
    {"lone surrogate", binary({"\x61\xD8\x3D"}), "'\uFFFD'"},
    {"long count",
     binary({"\x5F\x10\x10"
             "0123456789abcdef"}),
     "'0123456789abcdef'"},
    {"other values",
     binary({"\xA5\1\2\3\4\5"s,
             "\x10\x01",
             "\x22"s + std::string(4, '\0'),
             "\x33"s + std::string(8, '\0'),
             "\x80\x01"s,
             "\x00"s}),
     "(other,other,other,other,other,)"},
    {"wide references", binary({"\xA1\0\1"s, "\x51k"}, 2), "('k',)"},
    {"shared text", binary({"\xA3\1\1\1"s, "\x51k"}), "('k','k','k',)"},
    {"list in itself", binary({"\xA1\0"s}), "refused"},
    {"dictionary in itself", binary({"\xD1\1\0"s, "\x51k"}), "refused"},
    {"long circle", binary({"\xA2\1\1"s, "\xA2\2\2"s, "\xA2\0\0"s}), "refused"},
    {"reference past the objects", binary({"\xA1\2"s, "\x51k"}), "refused"},
    {"key that is no text", binary({"\xD1\1\1"s, "\x09"}), "refused"},
    {"content past the objects", binary({"\x4Fhi"}), "refused"},
    {"count past the objects", binary({"\xAF\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"}), "refused"},
    {"not ASCII", binary({"\x51\xE9"}), "refused"},
    {"unknown type", binary({"\x70"s}), "refused"},
    {"no objects", binary({}), "refused"},
    {"references of no size", binary({"\xA1\1"s, "\x09"}, 0), "refused"},
    {"references too wide", binary({"\xA1\1"s, "\x09"}, 9), "refused"},
};

TEST(ListTest, IsReadOrRefused) {
  for (const auto& [label, content, expected] : listCases) {
    EXPECT_EQ(shown(content), expected) << label;
  }
}

TEST(PropertyListLimits, RefusesDeepNestingQuickly) {
  constexpr std::size_t depth = 300'000;
  EXPECT_EQ(parse("<plist>" + support::repeated("<array>", depth)), std::nullopt);
  EXPECT_EQ(parse(std::string(depth, '(')), std::nullopt);
  EXPECT_EQ(parse(support::repeated("{a=", depth)), std::nullopt);
}

TEST(PropertyListLimits, DrawsTheLineAfter512Levels) {
  const auto nested = [](std::size_t depth) {
    return std::string(depth, '(') + std::string(depth, ')');
  };
  EXPECT_TRUE(parse(nested(512)));
  EXPECT_FALSE(parse(nested(513)));
}

/// Each object holds the next one twice, or a long text many times: small files, huge lists.
TEST(PropertyListLimits, RefusesFilesMadeToSwell) {
  std::vector<std::string> doubling;
  for (char next = 1; next <= 60; ++next) {
    doubling.push_back("\xA2"s + next + next);
  }
  doubling.emplace_back("\x51k");
  const std::string repeated = "\xAF\x11\x10\x01"s + std::string(0x1001, '\1');
  const std::string longText = "\x5F\x12\x00\x00\x80\x00"s + std::string(0x8000, 'x');
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(parse(binary(doubling)));
  EXPECT_FALSE(parse(binary({repeated, longText})));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(PropertyList, RefusesEveryTruncation) {
  const std::string lists[] = {
      "<plist>" + everything + "</plist>",
      "{ a = (\"b\\U00e9\", <68 69>); /* c */ }",
      binary({"\xD2\1\2\3\4"s, "\x51k", "\x61\0m"s, "\x42hi", "\xA1\5"s, "\x5F\x10\x01z"})};
  for (const std::string& list : lists) {
    ASSERT_NE(shown(list), "refused");
    for (std::size_t size = 0; size < list.size(); ++size) {
      const std::string_view part = std::string_view(list).substr(0, size);
      // The beginning of "bplist00" is a word, and a word is a list in the old-style encoding.
      const bool isWord = part.starts_with('b') && part.size() < 7;
      EXPECT_EQ(shown(part), isWord ? "'" + std::string(part) + "'" : "refused") << size;
    }
  }
}

}  // namespace
}  // namespace tolvane
