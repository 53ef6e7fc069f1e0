#include <cmath>
#include <stdexcept>

#include "BrowserCore/Addresses/ChoiceMemory.h"
#include "BrowserCore/Addresses/InlineCompletion.h"
#include "BrowserCore/Addresses/LinkRoute.h"
#include "BrowserCore/Addresses/PinnedAddress.h"
#include "BrowserCore/Addresses/SearchEngine.h"
#include "BrowserCore/Addresses/SearchShortcut.h"
#include "BrowserCore/Addresses/SiteName.h"
#include "BrowserCore/Addresses/TrackingParameters.h"
#include "BrowserCore/Addresses/URLInput.h"
#include "BrowserCore/Downloads/DownloadName.h"
#include "BrowserCore/Extensions/ExtensionGallery.h"
#include "BrowserCore/Look/SplitShares.h"
#include "BrowserCore/Look/Theme.h"
#include "BrowserCore/Text/Base64.h"
#include "Tools/Operations.h"

namespace orvel::tools {

namespace {

using nlohmann::json;

// A value that a request must have; an absent one ends the request.
template <typename T>
T required(std::optional<T> value) {
  if (!value) throw std::invalid_argument("a field's value is out of its range");
  return *std::move(value);
}

const std::string& text(const json& request, const char* field) {
  return request.at(field).get_ref<const std::string&>();
}

URL url(const json& request, const char* field) {
  return required(URL::parse(text(request, field)));
}

std::optional<URL> urlOrNull(const json& request, const char* field) {
  const auto value = request.find(field);
  if (value == request.end() || value->is_null()) return std::nullopt;
  return url(request, field);
}

SearchEngine engine(const json& request) {
  return required(SearchEngine::parse(text(request, "engine")));
}

json orNull(const std::optional<std::string>& value) { return value ? json(*value) : json(); }
json orNull(const std::optional<URL>& value) { return value ? json(value->text()) : json(); }

json shortcut(const json& request) {
  std::vector<SearchShortcut> shortcuts = SearchShortcut::builtIn();
  if (const auto given = request.find("shortcuts"); given != request.end()) {
    shortcuts.clear();
    for (const json& each : given->get_ref<const json::array_t&>())
      shortcuts.push_back({.keyword = text(each, "keyword"),
                           .name = text(each, "name"),
                           .urlTemplate = text(each, "template")});
  }
  const auto match = SearchShortcut::match(text(request, "text"), shortcuts);
  if (!match) return nullptr;
  return {{"keyword", match->shortcut.keyword},
          {"query", match->query},
          {"url", orNull(match->shortcut.url(match->query))}};
}

json complete(const json& request) {
  std::vector<URL> urls;
  for (const json& each : request.at("urls").get_ref<const json::array_t&>())
    urls.push_back(required(URL::parse(each.get_ref<const std::string&>())));
  return orNull(InlineCompletion::complete(text(request, "typed"), urls));
}

Date date(const json& seconds) {
  constexpr double kFurthest = 1e12;
  const double value = seconds.get<double>();
  if (!(std::abs(value) <= kFurthest)) throw std::out_of_range("a date");
  return Date(std::chrono::microseconds(std::llround(value * 1e6)));
}

json choices(const json& request) {
  ChoiceMemory memory;
  json tops = json::array();
  for (const json& event : request.at("events").get_ref<const json::array_t&>()) {
    if (const auto record = event.find("record"); record != event.end()) {
      memory.record(record->at(0).get_ref<const std::string&>(),
                    record->at(1).get_ref<const std::string&>(), date(record->at(2)));
    } else if (const auto top = event.find("top"); top != event.end()) {
      tops.push_back(orNull(memory.topChoice(top->at(0).get_ref<const std::string&>(),
                                             top->at(1).get<std::vector<std::string>>())));
    } else {
      memory.forget(text(event, "forget"));
    }
  }
  return tops;
}

json zipArchive(const json& request) {
  const std::string data = required(Base64::decoded(text(request, "base64")));
  const auto archive = ExtensionGallery::zipArchive(data);
  if (!archive) return {{"error", "notAnExtension"}};
  return Base64::encoded(*archive);
}

json listing(const json& request) {
  const auto found = ExtensionGallery::listing(url(request, "url"));
  return found ? json(found->source()) : json();
}

json resizedShares(const json& request) {
  const json& index = request.at("index");
  if (!index.is_number_unsigned()) throw std::invalid_argument("an index");
  return resized(request.at("shares").get<std::vector<double>>(), index.get<size_t>(),
                 request.at("delta").get<double>());
}

json nameOfDownload(const json& request) {
  const auto existing = request.at("existing").get<std::set<std::string>>();
  return downloadName(text(request, "suggested"),
                      [&existing](const std::string& name) { return existing.contains(name); });
}

}  // namespace

void addAddressOperations(Operations& operations) {
  operations["explicitURL"] = [](const json& r) {
    return orNull(URLInput::explicitURL(text(r, "text")));
  };
  operations["displayHost"] = [](const json& r) { return json(displayHost(url(r, "url"))); };
  operations["siteKey"] = [](const json& r) { return orNull(siteKey(url(r, "url"))); };
  operations["searchURL"] = [](const json& r) {
    return orNull(engine(r).searchURL(text(r, "query")));
  };
  operations["suggestionsURL"] = [](const json& r) {
    return orNull(engine(r).suggestionsURL(text(r, "query")));
  };
  operations["suggestions"] = [](const json& r) {
    return json(SearchEngine::suggestions(text(r, "data")));
  };
  operations["shortcut"] = shortcut;
  operations["strip"] = [](const json& r) {
    return orNull(TrackingParameters::stripped(url(r, "url")));
  };
  operations["listing"] = listing;
  operations["zipArchive"] = zipArchive;
  operations["linkRoute"] = [](const json& r) {
    return json(LinkRoute{.pattern = text(r, "pattern")}.matches(url(r, "url")));
  };
  operations["complete"] = complete;
  operations["choices"] = choices;
  operations["nearestTheme"] = [](const json& r) {
    return json(Theme::forHue(r.at("hue").get<double>()).id);
  };
  operations["wandered"] = [](const json& r) {
    return json(hasWanderedFromPin(urlOrNull(r, "pinned"), urlOrNull(r, "url")));
  };
  operations["siteName"] = [](const json& r) {
    return json(siteName(text(r, "title"), urlOrNull(r, "url")));
  };
  operations["resized"] = resizedShares;
  operations["downloadName"] = nameOfDownload;
}

}  // namespace orvel::tools
