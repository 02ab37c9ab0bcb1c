#pragma once

#include <map>
#include <utility>
#include <vector>

class QPDF;
class QPDFObjectHandle;

namespace tolvane {

/// Links between the pages of a composed document. libqpdf lets a copied link lead only to a page
/// that was copied before it; the others are led on once every page is there.
class PageLinks {
 public:
  PageLinks();
  ~PageLinks();
  PageLinks(const PageLinks&) = delete;
  PageLinks& operator=(const PageLinks&) = delete;

  /// Notes where the links of a copy lead. Links to a page that is taken more than once lead to its
  /// first copy.
  /// @param page of a document that is kept until the links are connected.
  void add(QPDFObjectHandle page, QPDFObjectHandle copy);

  /// Leads every link to the copy of its page. Links to pages that were not taken lead nowhere.
  void connect(QPDF& document);

 private:
  using PageId = std::pair<const QPDF*, int>;  // the source document and the object's number
  struct Link;

  static PageId idOf(const QPDFObjectHandle& page);

  std::map<PageId, int> copies_;  // numbers of the copied page objects
  std::vector<Link> links_;
};

}  // namespace tolvane
