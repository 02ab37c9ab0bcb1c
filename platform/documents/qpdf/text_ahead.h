#pragma once

#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/documents/page_reader.h"

namespace tolvane {

/// Reads text on a second thread: while the caller reads a few pages, this reads the few after
/// them. For documents whose pages are asked for in their order.
class TextAhead {
 public:
  /// @param reader of the caller's document, for the second thread alone.
  TextAhead(std::unique_ptr<PageReader> reader, int pageCount);

  /// @return nullopt for a page that the caller is to read. Waits for the others.
  /// @throws PlatformError when one of the pages ahead could not be read.
  [[nodiscard]] std::optional<std::string> take(int page);

 private:
  using Texts = std::vector<std::string>;

  void startAfter(int page);

  std::unique_ptr<PageReader> reader_;
  int pageCount_;
  int first_ = 0;  // of the pages that are read ahead
  Texts texts_;
  std::future<Texts> reading_;  // last, because its end waits for the thread
};

}  // namespace tolvane
