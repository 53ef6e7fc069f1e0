#pragma once

#include <string_view>
#include <vector>

#include "BrowserCore/ContentBlocking/ContentRule.h"

namespace orvel::filters {

// The sites on which a selector isn't to hide anything.
class ExceptionSites {
 public:
  // `entries`: of the form `*` and a host, in any order and with repetitions.
  explicit ExceptionSites(std::vector<std::string_view> entries);

  // The entries in ascending order, each once.
  [[nodiscard]] const std::vector<std::string_view>& entries() const { return entries_; }

  // Whether a site of the list is the same as one of these, or a subdomain or a parent of one.
  [[nodiscard]] bool isRelated(DomainList list) const;

 private:
  [[nodiscard]] bool isRelated(std::string_view host) const;

  std::vector<std::string_view> entries_;
  // The hosts without those that are subdomains of others here, ordered from their ends, where a
  // parent stands directly before its subdomains.
  std::vector<std::string_view> hosts_;
};

}  // namespace orvel::filters
