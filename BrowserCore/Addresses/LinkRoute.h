#pragma once

#include <span>
#include <string>

#include "BrowserCore/Addresses/URL.h"
#include "BrowserCore/UUID.h"

namespace orvel {

// A rule that sends links from other applications to a space.
struct LinkRoute {
  UUID id = UUID::random();
  // What the user typed: a site ("example.com"), or a site and a path ("example.com/docs").
  std::string pattern;
  UUID spaceID;

  // Whether the address lies at the pattern's site or one of its subdomains and, when the pattern
  // has a path, at that path or below it. Letter case, scheme, a leading "www." and the query take
  // no part. A pattern without a site matches nothing.
  [[nodiscard]] bool matches(const URL& url) const;

  friend bool operator==(const LinkRoute&, const LinkRoute&) = default;
};

// The first route, in the list's order, that matches; null without one.
[[nodiscard]] const LinkRoute* firstMatching(std::span<const LinkRoute> routes, const URL& url);

}  // namespace orvel
