#include "platform/text/rich_text.h"

#include <chrono>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

/// A label, what is read and what is to come of it.
using RichTextCase = std::tuple<const char*, std::string, std::string>;
/// Puts `body` into a document whose fonts 0 to 3 are Western, Cyrillic, Japanese and Mac.
std::string withFonts(const std::string& body) {
  return R"({\rtf1\ansi\ansicpg1252\deff0{\fonttbl{\f0\fswiss\fcharset0 Arial;})"
         R"({\f1\fnil\fcharset204{\*\falt Arial} Cyr;}{\f2\fcharset128 Mincho;})"
         R"({\f3\cpg10000 Geneva;}}{\colortbl;\red0\green0\blue0;})" +
         body + "}";
}

const RichTextCase plainTextCases[] = {
    {"paragraphs", R"({\rtf1 One\par Two\line Three})", "One\nTwo\nThree"},
    {"line ends in the file do not count", "{\\rtf1 a\r\nb\nc}", "abc"},
    {"escaped line end is a paragraph", "{\\rtf1 a\\\nb}", "a\nb"},
    {"one blank ends a word", R"({\rtf1\b  two})", " two"},
    {"table", R"({\rtf1\trowd a\cell b\cell\row c\cell\row})", "a\tb\t\nc\t\n"},
    {"nested table",
     R"({\rtf1{x\nestcell{\*\nesttableprops\trowd\nestrow}{\nonesttables\par}}\cell\row})",
     "x\t\n\t\n"},
    {"breaks", R"({\rtf1 a\sect b\page c\column d\tab e})", "a\nb\nc\nd\te"},
    {"special characters",
     R"({\rtf1\emdash\endash\lquote\rquote\ldblquote\rdblquote\bullet\emspace\~\_\-\zwj})",
     "—–‘’“”•\u2003\u00A0\u2011\u00AD\u200D"},
    {"escaped punctuation", R"({\rtf1 \{a\\b\}})", "{a\\b}"},
    {"Unicode with a stand-in", R"({\rtf1\u8364?\u233\'e9!})", "€é!"},
    {"negative unit", R"({\rtf1\u-3841?})", "\uF0FF"},
    {"unsigned unit and whole code point", R"({\rtf1\u61695?\u128512?})", "\uF0FF😀"},
    {"surrogate pair", R"({\rtf1\u-10179?\u-8704?})", "😀"},
    {"pair in groups of its own", R"({\rtf1{\u-10179?}{\b\u-8704?}})", "😀"},
    {"lone surrogates", R"({\rtf1 a\u-10179?b\u-8704?c\u-10179?})", "a\uFFFDb\uFFFDc\uFFFD"},
    {"length of the stand-in", R"({\rtf1\uc2\u8364\'80\'80a{\uc0\u8364}b\u8364xyc})", "€a€b€c"},
    {"stand-in by special character", R"({\rtf1\u8212\emdash\u8226\~x})", "—•x"},
    {"stand-in ends with the group", R"({\rtf1{\uc3\u8364?}abc})", "€abc"},
    {"stand-in ends at a word", R"({\rtf1\u8364\par x})", "€\nx"},
    {"document code page", R"({\rtf1\ansi\ansicpg1251\'cf\'f0})", "Пр"},
    {"Mac document", R"({\rtf1\mac caf\'8e})", "café"},
    {"DOS documents", R"({\rtf1\pc\'82})", "é"},
    {"multilingual DOS", R"({\rtf1\pca\'b5})", "Á"},
    {"font charset", withFonts(R"(\f0\'e9\f1\'e9{\f0\'e9}\'e9\plain\'e9)"), "éйéйé"},
    {"font code page", withFonts(R"(\f3\'8e)"), "é"},
    {"default font", R"({\rtf1\deff1{\fonttbl\f0\fcharset0 A;\f1\fcharset204 B;}\'e9})", "й"},
    {"double bytes", withFonts(R"(\f2\'83\'65\'83\'58\'83g)"), "テスト"},
    {"trail byte that is a backslash", withFonts(R"(\f2\'94\\)"), "能"},
    {"unknown code page", R"({\rtf1\ansicpg4711\'e9})", "é"},
    {"UTF-8", R"({\rtf1\ansicpg65001\'c3\'a9})", "é"},
    {"raw bytes", "{\\rtf1 caf\xE9}", "café"},
    {"destinations without text",
     R"({\rtf1{\info{\title T}}{\stylesheet{\s0 Normal;}}{\header h}{\footerf f}{\pict 0a0b})"
     R"({\*\generator g;}{\object{\result r}}{\*\unknown x{y}}{\xe entry}body})",
     "body"},
    {"field result", R"({\rtf1{\field{\*\fldinst HYPERLINK "u"}{\fldrslt link}}.})", "link."},
    {"shape text",
     R"({\rtf1{\shp{\*\shpinst\shpz0{\sp{\sn n}{\sv 1}}{\shptxt in}}{\shprslt{\*\do old}}}out})",
     "inout"},
    {"drawing text", R"({\rtf1{\*\do\dptxbx{\dptxbxtext\pard in}}})", "in"},
    {"Unicode alternative", R"({\rtf1{\upr{ansi}{\*\ud{\u960?}}}{\info{\upr{a}{\*\ud b}}}})", "π"},
    {"list marker", R"({\rtf1{\listtext\tab 1.\tab}first})", "\t1.\tfirst"},
    {"footnote", R"({\rtf1 a{\footnote\chftn  note}})", "a note"},
    {"hidden text", R"({\rtf1 a{\v b\u8364?\par}c\v d\v0 e\v f\plain g})", "aceg"},
    {"binary data", std::string(R"({\rtf1{\pict\bin4 }{}\}a\bin2 }}b})"), "ab"},
    {"binary data past the end", R"({\rtf1 a\bin99999999 b)", "a"},
    {"what follows the document", R"({\rtf1 a}b{\par})", "a"},
    {"truncated", R"({\rtf1 a{\b b)", "ab"},
    {"truncated in an escape", R"({\rtf1 a\'e)", "a"},
    {"damaged escape", R"({\rtf1 a\'xyb})", "ab"},
    {"number out of range", R"({\rtf1 a\u99999999999999?b})", "ab"},
    {"no text", R"({\rtf1})", ""},
};

TEST(PlainTextTest, KeepsTheTextAlone) {
  for (const auto& [label, rtf, expected] : plainTextCases) {
    EXPECT_EQ(RichText::plainText(rtf), expected) << label;
  }
}

TEST(RichText, RefusesWhatIsNoDocument) {
  for (const char* other : {"", "{\\rt", "{\\html}", " {\\rtf1 a}"}) {
    EXPECT_EQ(RichText::plainText(other), std::nullopt) << other;
  }
}

TEST(RichText, LimitsNesting) {
  const auto nested = [](int depth) {
    const auto inner = static_cast<std::size_t>(depth - 1);
    return "{\\rtf1 " + std::string(inner, '{') + "x" + std::string(inner, '}') + "}";
  };
  EXPECT_EQ(RichText::plainText(nested(10'000)), "x");
  EXPECT_EQ(RichText::plainText(nested(10'001)), std::nullopt);
  EXPECT_EQ(RichText::plainText("{\\rtf1" + std::string(3'000'000, '{')), std::nullopt);
}

TEST(RichText, ReadsInLinearTime) {
  std::string rtf = "{\\rtf1\\ansi ";
  while (rtf.size() < 1'000'000) {
    rtf += R"({\b\u-10179?\u-8704?\'e9x}\par )";
  }
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(RichText::plainText(rtf));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

const RichTextCase documentCases[] = {
    {"empty", "", ""},
    {"lines", "one\n\ntwo\n", "one\n\ntwo\n"},
    {"other line ends", "a\r\nb\rc\r\n", "a\nb\nc\n"},
    {"leading blanks", " a\n  b\t\t c", " a\n  b\t\t c"},
    {"markup", R"({\par} \'e9 \u960?)", R"({\par} \'e9 \u960?)"},
    {"digits after a character", "é1-2 ?", "é1-2 ?"},
    {"beyond the basic plane", "日本語 😀\u00A0\uFFFD", "日本語 😀\u00A0\uFFFD"},
    {"control characters", "a\x01\x0C\x7F", "a\x01\x0C\x7F"},
    {"malformed", "a\xC3(", "a\uFFFD("},
};

TEST(DocumentTest, ReadsBackAsItWas) {
  for (const auto& [label, text, expected] : documentCases) {
    SCOPED_TRACE(label);
    const std::string rtf = RichText::document(text);
    EXPECT_EQ(RichText::plainText(rtf), expected);
    EXPECT_EQ(rtf.find_first_of("\x80\xFF\x01\x7F\t\r"), std::string::npos) << rtf;
  }
}

}  // namespace
}  // namespace tolvane
