#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "BrowserCore/Addresses/URL.h"
#include "BrowserCore/UUID.h"

namespace orvel {

// A keyword search: the keyword, a blank and a query typed into the command bar search one site.
struct SearchShortcut {
  UUID id = UUID::random();
  std::string keyword;
  std::string name;
  // An address with "%s" where the query goes, perhaps without a scheme. Stored as "template".
  std::string urlTemplate;

  // The list that a new user has. Its ids are new in each run.
  [[nodiscard]] static const std::vector<SearchShortcut>& builtIn();

  struct Match;
  // The first of `shortcuts` whose keyword the text begins with, in any letter case, and whose
  // template has a place for the query; absent without a query behind the keyword.
  [[nodiscard]] static std::optional<Match> match(std::string_view text,
                                                  std::span<const SearchShortcut> shortcuts);

  // The address that searches for the query; "https://" is put in front of a template without a
  // scheme. Absent when the query is no UTF-8, when the outcome is no URL, or when it would be
  // longer than 64 MiB.
  [[nodiscard]] std::optional<URL> url(std::string_view query) const;

  // By what the user sees: `id` is left out, so that a stored list can equal the built-in one.
  friend bool operator==(const SearchShortcut& a, const SearchShortcut& b) {
    return a.keyword == b.keyword && a.name == b.name && a.urlTemplate == b.urlTemplate;
  }
};

struct SearchShortcut::Match {
  SearchShortcut shortcut;
  std::string query;
};

}  // namespace orvel
