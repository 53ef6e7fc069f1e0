#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "BrowserCore/Addresses/URL.h"

namespace orvel {

// One of the search engines that the user can choose between.
class SearchEngine {
 public:
  enum Case : uint8_t { google, duckDuckGo, kagi, bing, ecosia, startpage };

  // In the order of the settings' picker.
  static constexpr std::array<Case, 6> allCases = {google, duckDuckGo, kagi,
                                                   bing,   ecosia,     startpage};

  constexpr SearchEngine(Case value) : value_(value) {}  // NOLINT: an engine is its case.

  // The engine with this `id`; absent for any other text.
  [[nodiscard]] static std::optional<SearchEngine> parse(std::string_view id);

  constexpr operator Case() const { return value_; }  // NOLINT: so that a switch reads it.

  // The text under which settings store the engine.
  std::string_view id() const;
  // The name shown to people.
  std::string_view name() const;
  bool offersSuggestions() const;

  // The page of results for the query as it stands, blanks included. Absent when the query is no
  // UTF-8.
  [[nodiscard]] std::optional<URL> searchURL(std::string_view query) const;

  // Where the engine's completions of the query are read. Absent too for an engine that offers
  // none.
  [[nodiscard]] std::optional<URL> suggestionsURL(std::string_view query) const;

  // The completions in a reply: the second element of a JSON array, when it is an array of texts.
  // Empty for anything else.
  [[nodiscard]] static std::vector<std::string> suggestions(std::string_view data);

 private:
  Case value_;
};

}  // namespace orvel
