#pragma once

#include <array>
#include <optional>
#include <span>
#include <string_view>

#include "BrowserCore/ContentBlocking/ContentRule.h"
#include "BrowserCore/ContentBlocking/DomainScope.h"
#include "BrowserCore/ContentBlocking/TextArena.h"

namespace orvel::filters {

// The rules of one network filter: one for the resources in a page, one for frames, or both.
struct NetworkFilter {
  bool isException = false;

  [[nodiscard]] std::span<const ContentRule> rules() const { return {rules_.data(), count_}; }

  // Reads a trimmed line. Nothing if any part of it isn't understood or can't be expressed, or if
  // it would match every address on every site. Its texts are kept in `arena`.
  static std::optional<NetworkFilter> parse(std::string_view line, DomainScopes& scopes,
                                            TextArena& arena);

 private:
  std::array<ContentRule, 2> rules_;
  size_t count_ = 0;
};

}  // namespace orvel::filters
