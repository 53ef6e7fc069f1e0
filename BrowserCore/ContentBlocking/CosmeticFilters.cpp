#include "BrowserCore/ContentBlocking/CosmeticFilters.h"

#include <utility>

namespace orvel::filters {

bool CosmeticFilters::consume(const CosmeticMarker& line) {
  if (!isSupportedSelector(line.selector)) return false;
  const auto scope = scopes_.parse(line.domains, ',');
  if (!scope) return false;
  if (line.kind == CosmeticMarker::Kind::exception) {
    if (scope->ifDomain.isEmpty()) return false;
    append(entries_[selectorNumber(line.selector)].exceptions, scope->number);
    return true;
  }
  const uint32_t selector = selectorNumber(line.selector);
  if (scope->isEmpty()) {
    if (!std::exchange(entries_[selector].isGeneric, true)) generic_.push_back(selector);
    return true;
  }
  if (scope->number >= scoped_.size()) scoped_.resize(scopes_.count());
  Chain& chain = scoped_[scope->number];
  if (chain.first == none) scopeOrder_.push_back(scope->number);
  append(chain, selector);
  return true;
}

uint32_t CosmeticFilters::selectorNumber(std::string_view selector) {
  const TextTable::Entry entry = selectors_.insert(selector);
  if (entry.isNew) entries_.emplace_back();
  return entry.number;
}

void CosmeticFilters::append(Chain& chain, uint32_t number) {
  const auto index = static_cast<uint32_t>(links_.size());
  links_.push_back({number, none});
  if (chain.first == none)
    chain.first = index;
  else
    links_[chain.last].next = index;
  chain.last = index;
}

}  // namespace orvel::filters
