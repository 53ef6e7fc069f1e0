#include "BrowserCore/ContentBlocking/NetworkFilterOptions.h"

#include <algorithm>
#include <array>

#include "BrowserCore/Text/Text.h"

namespace orvel::filters {

namespace {

enum class Effect : uint8_t {
  unknown,
  ignored,
  thirdParty,
  firstParty,
  caseSensitive,
  domain,
  document,
  subdocument,
  excludesSubdocument,
  type,
  excludedType,
};

struct Name {
  std::string_view text;
  Effect effect;
  // The effect of the name behind a "~".
  Effect negated = Effect::unknown;
  // For the effects on types.
  ResourceType type = ResourceType::document;
};

constexpr Name typeName(std::string_view text, ResourceType type) {
  return {text, Effect::type, Effect::excludedType, type};
}

// By length, so that a look-up compares few of them.
constexpr std::array names = {
    Name{"3p", Effect::thirdParty, Effect::firstParty},
    Name{"1p", Effect::firstParty},
    typeName("css", ResourceType::styleSheet),
    Name{"doc", Effect::document},
    typeName("xhr", ResourceType::raw),
    typeName("font", ResourceType::font),
    Name{"from", Effect::domain},
    typeName("ping", ResourceType::raw),
    Name{"frame", Effect::subdocument, Effect::excludesSubdocument},
    typeName("image", ResourceType::image),
    typeName("media", ResourceType::media),
    typeName("other", ResourceType::raw),
    Name{"domain", Effect::domain},
    // Plug-in content doesn't exist here, so leaving it out is right and blocking it alone isn't.
    Name{"object", Effect::unknown, Effect::ignored},
    typeName("script", ResourceType::script),
    Name{"document", Effect::document},
    Name{"important", Effect::ignored},
    typeName("websocket", ResourceType::raw),
    Name{"match-case", Effect::caseSensitive},
    typeName("stylesheet", ResourceType::styleSheet),
    Name{"first-party", Effect::firstParty},
    Name{"subdocument", Effect::subdocument, Effect::excludesSubdocument},
    Name{"third-party", Effect::thirdParty, Effect::firstParty},
    typeName("xmlhttprequest", ResourceType::raw),
};
static_assert(std::ranges::is_sorted(names, {}, [](const Name& name) { return name.text.size(); }));

// Where the names of each length begin; the next entry is where they end.
constexpr auto firstOfLength = [] {
  std::array<uint8_t, names.back().text.size() + 2> first{};
  for (size_t length = 0; length < first.size(); ++length)
    for (const Name& name : names)
      if (name.text.size() < length) ++first[length];
  return first;
}();

const Name* findName(std::string_view text) {
  if (text.size() + 1 >= firstOfLength.size()) return nullptr;
  for (size_t i = firstOfLength[text.size()]; i < firstOfLength[text.size() + 1]; ++i)
    if (text::equalsIgnoringASCIICase(names[i].text, text)) return &names[i];
  return nullptr;
}

}  // namespace

std::optional<NetworkFilterOptions> NetworkFilterOptions::parse(std::string_view text,
                                                                DomainScopes& scopes) {
  NetworkFilterOptions options;
  while (!text.empty()) {
    const std::string_view option = text.substr(0, text.find(','));
    text.remove_prefix(std::min(option.size() + 1, text.size()));
    if (!option.empty() && !options.apply(option, scopes)) return std::nullopt;
  }
  return options;
}

bool NetworkFilterOptions::apply(std::string_view option, DomainScopes& scopes) {
  option.remove_prefix(std::min(option.find_first_not_of('='), option.size()));
  const std::string_view text = option.substr(0, option.find('='));
  const std::string_view value = option.substr(std::min(text.size() + 1, option.size()));
  const bool isNegated = text.starts_with('~');
  const Name* const name = findName(text.substr(isNegated ? 1 : 0));
  if (name == nullptr) return false;
  switch (isNegated ? name->negated : name->effect) {
    case Effect::unknown:
      return false;
    case Effect::ignored:
      return true;
    case Effect::thirdParty:
      loadType = ContentRule::LoadType::thirdParty;
      return true;
    case Effect::firstParty:
      loadType = ContentRule::LoadType::firstParty;
      return true;
    case Effect::caseSensitive:
      isCaseSensitive = true;
      return true;
    case Effect::domain: {
      const auto sites = scopes.parse(value, '|');
      if (!sites || sites->isEmpty()) return false;
      scope = *sites;
      return true;
    }
    case Effect::document:
      isDocument = true;
      return true;
    case Effect::subdocument:
      hasSubdocument = true;
      return true;
    case Effect::excludesSubdocument:
      excludesSubdocument = true;
      return true;
    case Effect::type:
      types.insert(name->type);
      return true;
    case Effect::excludedType:
      excludedTypes.insert(name->type);
      return true;
  }
  return false;
}

}  // namespace orvel::filters
