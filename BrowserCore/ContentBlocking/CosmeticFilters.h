#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "BrowserCore/ContentBlocking/CosmeticFilter.h"
#include "BrowserCore/ContentBlocking/DomainScope.h"
#include "BrowserCore/ContentBlocking/TextTable.h"

namespace orvel::filters {

// The hiding lines of a list as they are gathered. A selector's exceptions may stand anywhere, so
// no rule is made before the end. Selectors are views of the list's text.
class CosmeticFilters {
 public:
  // Selectors that one scope hides, or scopes that one selector is excepted on: a chain of links
  // in the order of the file.
  struct Link {
    uint32_t number;
    uint32_t next;
  };
  static constexpr uint32_t none = UINT32_MAX;

  // `expectedCount`: about how many different selectors there will be.
  CosmeticFilters(DomainScopes& scopes, size_t expectedCount)
      : scopes_(scopes), selectors_(expectedCount) {
    entries_.reserve(expectedCount);
  }

  // Takes a hiding or an exception line; false if it has to be given up.
  bool consume(const CosmeticMarker& line);

  // The numbers of the selectors for all sites, each once, and of the scopes that have selectors,
  // both in order of first appearance.
  [[nodiscard]] std::span<const uint32_t> genericSelectors() const { return generic_; }
  [[nodiscard]] std::span<const uint32_t> scopeOrder() const { return scopeOrder_; }

  [[nodiscard]] size_t selectorCount() const { return selectors_.size(); }
  [[nodiscard]] std::string_view selector(uint32_t number) const { return selectors_[number]; }
  // The first link of each chain, `none` if it is empty.
  [[nodiscard]] uint32_t scopedSelectors(uint32_t scope) const { return scoped_[scope].first; }
  [[nodiscard]] uint32_t exceptions(uint32_t selector) const {
    return entries_[selector].exceptions.first;
  }
  [[nodiscard]] Link link(uint32_t index) const { return links_[index]; }

 private:
  struct Chain {
    uint32_t first = none;
    uint32_t last = none;
  };
  struct Entry {
    bool isGeneric = false;
    Chain exceptions;
  };

  uint32_t selectorNumber(std::string_view selector);
  void append(Chain& chain, uint32_t number);

  DomainScopes& scopes_;
  TextTable selectors_;
  std::vector<Entry> entries_;
  std::vector<uint32_t> generic_;
  std::vector<Chain> scoped_;
  std::vector<uint32_t> scopeOrder_;
  std::vector<Link> links_;
};

}  // namespace orvel::filters
