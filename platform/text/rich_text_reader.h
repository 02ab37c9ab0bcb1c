#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text/code_page.h"
#include "platform/text/rich_text_fonts.h"
#include "platform/text/utf16_joiner.h"

namespace tolvane {

/// Reads one RTF document into plain text, in one pass.
class RichTextReader {
 public:
  /// @param rtf outlives this object.
  explicit RichTextReader(std::string_view rtf);

  /// To be called once. As RichText::plainText.
  [[nodiscard]] std::optional<std::string> read();

 private:
  /// `alternatives`: of several versions of a text, only the one in Unicode is wanted.
  enum class Skip { nothing, alternatives, everything };

  /// What a closing brace takes back.
  struct Group {
    Skip skip = Skip::nothing;
    bool isHidden = false;
    bool isFontTable = false;
    int font = RichTextFonts::noFont;
    int fallbackLength = 1;  // characters that stand in for a Unicode escape
  };

  /// A control word as it stands in the document: a name and perhaps a number.
  struct Parameter {
    int number = 0;
    bool isPresent = false;
  };

  struct Word {
    std::string_view name;
    /// @param value from the table.
    void (RichTextReader::*act)(int value, Parameter parameter);
    int value = 0;
  };

  static const Word words[];

  /// @return nullptr for a word that changes nothing about the text.
  [[nodiscard]] static const Word* wordNamed(std::string_view name);

  // Parts of the grammar. position_ stands after the character that told them apart.
  [[nodiscard]] bool openGroup();
  void closeGroup();
  void control();
  void controlWord();
  void controlSymbol(char symbol);
  void hexadecimalByte();
  void run();
  [[nodiscard]] Parameter parameter();

  // What control words do.
  void character(int codePoint, Parameter parameter);
  void lineEnd(int value, Parameter parameter);
  void unicode(int value, Parameter parameter);
  void fallbackLength(int value, Parameter parameter);
  void skipDestination(int value, Parameter parameter);
  void keepDestination(int value, Parameter parameter);
  void alternatives(int value, Parameter parameter);
  void unicodeAlternative(int value, Parameter parameter);
  void fontTable(int value, Parameter parameter);
  void font(int value, Parameter parameter);
  void fontCharset(int value, Parameter parameter);
  void fontCodePage(int value, Parameter parameter);
  void defaultFont(int value, Parameter parameter);
  void documentCodePage(int value, Parameter parameter);
  void ansiCodePage(int value, Parameter parameter);
  void hidden(int value, Parameter parameter);
  void plain(int value, Parameter parameter);
  void binary(int value, Parameter parameter);

  // Text on its way out.
  enum class Content { ascii, anyBytes };
  void appendRun(std::string_view bytes, Content content);
  void appendCharacter(char32_t codePoint);
  void holdBytes(std::string_view bytes);
  void decodeHeldBytes();
  [[nodiscard]] bool isSilent() const { return group_.skip != Skip::nothing || group_.isHidden; }
  [[nodiscard]] bool isFallback();

  std::string_view rtf_;
  std::size_t position_ = 0;
  Group group_;
  std::vector<Group> outerGroups_;
  bool isStarred_ = false;  // "\*" was read: a destination to be skipped unless known
  int fallback_ = 0;        // characters still to be dropped after a Unicode escape

  RichTextFonts fonts_;
  std::map<int, CodePage> codePages_;
  std::string heldBytes_;  // text not yet decoded: a character may span several escapes
  int heldCodePage_ = 0;

  std::string text_;
  Utf16Joiner joiner_;
};

}  // namespace tolvane
