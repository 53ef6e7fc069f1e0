#include "BrowserCore/Addresses/SearchEngine.h"

#include <nlohmann/json.hpp>

#include "BrowserCore/Addresses/Endpoints.h"
#include "BrowserCore/Addresses/PercentCoding.h"

namespace orvel {

namespace {

struct Facts {
  std::string_view id;
  std::string_view name;
  std::string_view search;
  std::string_view suggestions;  // Empty when the engine offers none.
};

constexpr Facts kFacts[] = {
    {"google", "Google", endpoints::kGoogleSearch, endpoints::kGoogleSuggestions},
    {"duckDuckGo", "DuckDuckGo", endpoints::kDuckDuckGoSearch, endpoints::kDuckDuckGoSuggestions},
    {"kagi", "Kagi", endpoints::kKagiSearch, endpoints::kKagiSuggestions},
    {"bing", "Bing", endpoints::kBingSearch, endpoints::kBingSuggestions},
    {"ecosia", "Ecosia", endpoints::kEcosiaSearch, {}},
    {"startpage", "Startpage", endpoints::kStartpageSearch, {}},
};
static_assert(std::size(kFacts) == SearchEngine::allCases.size());

std::optional<URL> endpointURL(std::string_view prefix, std::string_view query) {
  const auto encoded = percentEncoded(query, kQueryValueCharacters);
  if (!encoded) return std::nullopt;
  return URL::parse(std::string(prefix).append(*encoded));
}

// Keeps the texts of a reply's second element as the parser meets them, so that a hostile reply
// never becomes a tree. A false answer ends the parsing.
class ReplyReader : public nlohmann::json_sax<nlohmann::json> {
 public:
  std::vector<std::string> takeTexts() { return std::move(texts_); }

  bool null() override { return otherValue(); }
  bool boolean(bool) override { return otherValue(); }
  bool number_integer(number_integer_t) override { return otherValue(); }
  bool number_unsigned(number_unsigned_t) override { return otherValue(); }
  bool number_float(number_float_t, const string_t&) override { return otherValue(); }
  bool binary(binary_t&) override { return false; }
  bool key(string_t&) override { return true; }

  bool string(string_t& value) override {
    if (!isAmongTexts()) return otherValue();
    texts_.push_back(std::move(value));
    return true;
  }
  bool start_object(size_t) override { return otherValue() && open(); }
  bool end_object() override { return close(); }
  bool start_array(size_t) override {
    if (depth_ == 0) return open();
    if (depth_ > 1 || element_ != 1) return otherValue() && open();
    ++element_;
    isReadingTexts_ = true;
    return open();
  }
  bool end_array() override {
    if (isAmongTexts()) isReadingTexts_ = false;
    return close();
  }
  bool parse_error(size_t, const std::string&, const nlohmann::json::exception&) override {
    return false;
  }

 private:
  bool isAmongTexts() const { return isReadingTexts_ && depth_ == 2; }

  // A value that is neither the reply nor one of the texts: allowed everywhere but at the top, as
  // the second element and among the texts.
  bool otherValue() {
    if (depth_ == 0 || isAmongTexts()) return false;
    if (depth_ > 1) return true;
    return element_++ != 1;
  }
  bool open() {
    ++depth_;
    return true;
  }
  bool close() {
    --depth_;
    return true;
  }

  std::vector<std::string> texts_;
  size_t depth_ = 0;
  size_t element_ = 0;  // The index of the reply's next element.
  bool isReadingTexts_ = false;
};

}  // namespace

std::optional<SearchEngine> SearchEngine::parse(std::string_view id) {
  for (const Case engine : allCases)
    if (kFacts[engine].id == id) return engine;
  return std::nullopt;
}

std::string_view SearchEngine::id() const { return kFacts[value_].id; }
std::string_view SearchEngine::name() const { return kFacts[value_].name; }
bool SearchEngine::offersSuggestions() const { return !kFacts[value_].suggestions.empty(); }

std::optional<URL> SearchEngine::searchURL(std::string_view query) const {
  return endpointURL(kFacts[value_].search, query);
}

std::optional<URL> SearchEngine::suggestionsURL(std::string_view query) const {
  if (!offersSuggestions()) return std::nullopt;
  return endpointURL(kFacts[value_].suggestions, query);
}

std::vector<std::string> SearchEngine::suggestions(std::string_view data) {
  ReplyReader reader;
  if (!nlohmann::json::sax_parse(data, &reader)) return {};
  return reader.takeTexts();
}

}  // namespace orvel
