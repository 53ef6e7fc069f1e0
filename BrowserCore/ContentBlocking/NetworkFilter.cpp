#include "BrowserCore/ContentBlocking/NetworkFilter.h"

#include <algorithm>
#include <cstring>

#include "BrowserCore/ContentBlocking/NetworkFilterOptions.h"
#include "BrowserCore/ContentBlocking/URLFilterPattern.h"

namespace orvel::filters {

namespace {

constexpr std::string_view everyAddress = ".*";

// What a filter without types is for.
constexpr ResourceTypes defaultTypes = {
    ResourceType::font,   ResourceType::image,      ResourceType::media,      ResourceType::raw,
    ResourceType::script, ResourceType::styleSheet, ResourceType::svgDocument};

constexpr bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

constexpr auto optionCharacters = [] {
  std::array<bool, 256> characters{};
  for (size_t c = 0; c < 0x80; ++c) characters[c] = isLetter(static_cast<char>(c));
  for (const char c : std::string_view("0123456789~-_=|.,*"))
    characters[static_cast<unsigned char>(c)] = true;
  return characters;
}();

// A "$" that belongs to an address is followed by other things, and nothing tries to read it so.
bool isOptionText(std::string_view text) {
  return !text.empty() && (isLetter(text.front()) || text.front() == '~') &&
         std::ranges::all_of(text,
                             [](char c) { return optionCharacters[static_cast<uint8_t>(c)]; });
}

// The types of the rule for resources; empty if the filter is for frames alone.
ResourceTypes resourceTypes(const NetworkFilterOptions& options) {
  if (!options.types.isEmpty()) return options.types;
  if (options.hasSubdocument && options.excludedTypes.isEmpty()) return {};
  return defaultTypes.subtracting(options.excludedTypes);
}

bool coversFrames(const NetworkFilterOptions& options) {
  return options.hasSubdocument || (options.types.isEmpty() && !options.excludesSubdocument);
}

}  // namespace

std::optional<NetworkFilter> NetworkFilter::parse(std::string_view line, DomainScopes& scopes,
                                                  TextArena& arena) {
  std::optional<NetworkFilter> result(std::in_place);
  NetworkFilter& filter = *result;
  filter.isException = line.starts_with("@@");
  if (filter.isException) line.remove_prefix(2);

  std::string_view pattern = line;
  NetworkFilterOptions options;
  // The C library looks at many bytes at a time, which the standard one doesn't from the end.
  if (const void* const found = memrchr(line.data(), '$', line.size())) {
    const auto dollar = static_cast<size_t>(static_cast<const char*>(found) - line.data());
    pattern = line.substr(0, dollar);
    const std::string_view optionText = line.substr(dollar + 1);
    if (!isOptionText(optionText)) return std::nullopt;
    const auto parsed = NetworkFilterOptions::parse(optionText, scopes);
    if (!parsed) return std::nullopt;
    options = *parsed;
  }

  ContentRule& rule = filter.rules_[0];
  rule.action.type = filter.isException ? ContentRule::ActionType::ignorePreviousRules
                                        : ContentRule::ActionType::block;
  filter.count_ = 1;
  if (options.isDocument) {
    // Blocking a whole page isn't for a list to say; allowing one is, and for a site as a whole.
    const auto host = filter.isException ? plainDomain(pattern) : std::nullopt;
    const auto site = host ? scopes.site(*host) : std::nullopt;
    if (!site) return std::nullopt;
    rule.trigger = site->trigger(everyAddress);
    return result;
  }

  const auto address = urlFilter(pattern, arena);
  if (!address || (*address == everyAddress && !options.scope)) return std::nullopt;
  rule.trigger = options.scope.value_or(DomainScope{}).trigger(*address);
  if (options.isCaseSensitive) rule.trigger.urlFilterIsCaseSensitive = true;
  rule.trigger.loadType = options.loadType;
  rule.trigger.resourceType = resourceTypes(options);
  if (coversFrames(options)) {
    // A filter for frames alone has no rule for resources before this one.
    if (!rule.trigger.resourceType.isEmpty()) filter.rules_[filter.count_++] = rule;
    ContentRule& frames = filter.rules_[filter.count_ - 1];
    frames.trigger.resourceType = {ResourceType::document};
    frames.trigger.loadContext = ContentRule::LoadContext::childFrame;
  }
  return result;
}

}  // namespace orvel::filters
