#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "BrowserCore/Addresses/URL.h"

namespace orvel {

namespace URLInput {

// The address that a typed or pasted text is meant as; absent when the text is no address and thus
// a search.
//
// A text with one of the schemes http, https, file, about and data is taken as it stands. Without
// one of them, "localhost" and four groups of digits get "http://", and what looks like a domain (a
// dot, and a last label of two or more letters of any script) gets "https://" in front. Absent for
// any text with a blank or a control character inside, for an http address without a host, and
// where host or port cannot be one: a host is RFC 3986's, with letters beyond ASCII beside its
// characters; a port is a number up to 65535 or nothing.
[[nodiscard]] std::optional<URL> explicitURL(std::string_view text);

}  // namespace URLInput

// The short name under which an address is shown: its decoded host without a leading "www." (in
// lower case only); without a host the last component of a file's path, or else the whole text.
[[nodiscard]] std::string displayHost(const URL& url);

// The key under which state that belongs to a site is filed: the last two labels of the decoded
// host in lower case, with no regard to public suffixes; an IP address as it stands. Absent
// without a host.
[[nodiscard]] std::optional<std::string> siteKey(const URL& url);

// Whether the host is the domain or one of its subdomains. Both in lower case.
[[nodiscard]] bool isHostWithin(std::string_view host, std::string_view domain);

}  // namespace orvel
