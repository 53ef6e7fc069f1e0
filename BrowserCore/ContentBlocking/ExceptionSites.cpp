#include "BrowserCore/ContentBlocking/ExceptionSites.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "BrowserCore/Text/Text.h"

namespace orvel::filters {

namespace {

std::string_view hostOf(std::string_view entry) {
  entry.remove_prefix(std::min(entry.find_first_not_of('*'), entry.size()));
  return entry;
}

// Whether `host` is `site` or a subdomain of it.
bool isWithin(std::string_view host, std::string_view site) {
  return host.ends_with(site) &&
         (host.size() == site.size() || host[host.size() - site.size() - 1] == '.');
}

// Orders hosts by their characters from the last one to the first, as if each began with a ".", so
// that exactly the subdomains of a host have its text before them in this order.
bool precedes(std::string_view a, std::string_view b) {
  const auto [inA, inB] = std::mismatch(a.rbegin(), a.rend(), b.rbegin(), b.rend());
  if (inB == b.rend() && inA == a.rend()) return false;
  const char nextOfA = inA == a.rend() ? '.' : *inA;
  const char nextOfB = inB == b.rend() ? '.' : *inB;
  return nextOfA == nextOfB ? inA == a.rend() : nextOfA < nextOfB;
}

}  // namespace

ExceptionSites::ExceptionSites(std::vector<std::string_view> entries)
    : entries_(std::move(entries)) {
  std::ranges::sort(entries_);
  entries_.erase(std::unique(entries_.begin(), entries_.end()), entries_.end());
  std::vector<std::string_view> hosts(entries_.size());
  std::ranges::transform(entries_, hosts.begin(), hostOf);
  std::ranges::sort(hosts, precedes);
  for (const std::string_view host : hosts)
    if (hosts_.empty() || !isWithin(host, hosts_.back())) hosts_.push_back(host);
}

bool ExceptionSites::isRelated(DomainList list) const {
  return std::ranges::any_of(text::splitNonEmpty(list.joined(), ','),
                             [&](std::string_view entry) { return isRelated(hostOf(entry)); });
}

bool ExceptionSites::isRelated(std::string_view host) const {
  const auto next = std::ranges::lower_bound(hosts_, host, precedes);
  return (next != hosts_.end() && isWithin(*next, host)) ||
         (next != hosts_.begin() && isWithin(host, *std::prev(next)));
}

}  // namespace orvel::filters
