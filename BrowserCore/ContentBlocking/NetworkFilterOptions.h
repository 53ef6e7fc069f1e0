#pragma once

#include <optional>
#include <string_view>

#include "BrowserCore/ContentBlocking/ContentRule.h"
#include "BrowserCore/ContentBlocking/DomainScope.h"

namespace orvel::filters {

// What stands behind the "$" of a network filter.
struct NetworkFilterOptions {
  std::optional<ContentRule::LoadType> loadType;
  bool isCaseSensitive = false;
  std::optional<DomainScope> scope;
  // Types asked for and types negated with "~".
  ResourceTypes types;
  ResourceTypes excludedTypes;
  // Frames asked for and frames negated.
  bool hasSubdocument = false;
  bool excludesSubdocument = false;
  // The whole page; only exceptions may say so.
  bool isDocument = false;

  // Reads options separated by commas, a later one overwriting an earlier one of its kind. Nothing
  // if any of them isn't understood.
  static std::optional<NetworkFilterOptions> parse(std::string_view text, DomainScopes& scopes);

  // Takes one option into account; false if it isn't understood.
  bool apply(std::string_view option, DomainScopes& scopes);
};

}  // namespace orvel::filters
