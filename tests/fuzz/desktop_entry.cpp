#include "platform/desktop/desktop_entry.h"

#include "tests/fuzz/reader.h"

void read(tolvane::BytesView input) {
  using namespace tolvane;
  for (const auto& [key, value] : DesktopEntry::keysIn(asText(input))) {
    static_cast<void>(DesktopEntry::programIn(value));
  }
  const std::string entry =
      "[Desktop Entry]\nExec=" + DesktopEntry::execValue("/usr/bin/tolvane") + "\n";
  require(DesktopEntry::programIn(DesktopEntry::keysIn(entry).at("Exec")) == "/usr/bin/tolvane");
}
