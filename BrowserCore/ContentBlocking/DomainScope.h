#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "BrowserCore/ContentBlocking/ContentRule.h"
#include "BrowserCore/ContentBlocking/TextArena.h"
#include "BrowserCore/ContentBlocking/TextTable.h"

namespace orvel::filters {

// The sites to which a filter is limited. At most one of the lists has entries; with none the
// filter is for every site.
struct DomainScope {
  DomainList ifDomain;
  DomainList unlessDomain;
  // Which of the lists that its `DomainScopes` met this is: the same for equal scopes.
  uint32_t number = 0;

  [[nodiscard]] bool isEmpty() const { return ifDomain.isEmpty() && unlessDomain.isEmpty(); }

  // A trigger with this scope and nothing else.
  [[nodiscard]] ContentRule::Trigger trigger(std::string_view urlFilter) const {
    return {.urlFilter = urlFilter, .ifDomain = ifDomain, .unlessDomain = unlessDomain};
  }
};

// Writes `*` and the host in lower case to `out`, which has room for one byte more than `host` has.
// Returns how many bytes those are, or 0 for what isn't a host of several labels in ASCII.
size_t normalizeDomain(std::string_view host, char* out);

// Reads scopes and keeps each once, so that filters with the same list share its text.
class DomainScopes {
 public:
  // `expectedCount`: about how many different scopes there will be.
  DomainScopes(TextArena& arena, size_t expectedCount) : arena_(arena), table_(expectedCount) {}

  // Reads hosts between separators, those behind "~" being excluded. Nothing if an excluded entry
  // isn't a host, if entries of both kinds stand together, or if of plain entries only ones were
  // given that aren't hosts. A plain entry that isn't a host is dropped beside one that is: rules
  // for the other sites stay right, while a dropped exclusion would make a rule too wide.
  std::optional<DomainScope> parse(std::string_view text, char separator);

  // The scope of a single site; nothing if `host` isn't a host.
  std::optional<DomainScope> site(std::string_view host);

  // The scopes met so far, by number from 0 to below `count`; the empty one has no number here.
  [[nodiscard]] size_t count() const { return table_.size(); }
  [[nodiscard]] DomainScope operator[](uint32_t number) const;

 private:
  // The scope of a key that stands uncommitted in the arena.
  DomainScope keep(std::string_view key);

  TextArena& arena_;
  // The joined entries, behind a "~" if they are excluded ones.
  TextTable table_;
};

}  // namespace orvel::filters
