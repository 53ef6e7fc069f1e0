#include "BrowserCore/Addresses/TrackingParameters.h"

#include "BrowserCore/Addresses/Endpoints.h"
#include "BrowserCore/Addresses/URLInput.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

// In ascending order, for binary search.
constexpr std::string_view kNames[] = {
    "__hsfp",      "__hssc",     "__hstc",     "_gl",      "_hsenc",  "_hsmi",
    "_openstat",   "dclid",      "fbclid",     "gbraid",   "gclid",   "gclsrc",
    "igshid",      "li_fat_id",  "mc_cid",     "mc_eid",   "mkt_tok", "msclkid",
    "oly_anon_id", "oly_enc_id", "rb_clickid", "ref_src",  "srsltid", "ttclid",
    "twclid",      "vero_id",    "wbraid",     "wickedid", "yclid",
};
static_assert(std::size(kNames) == 29 && std::ranges::is_sorted(kNames));

constexpr std::string_view kPrefixes[] = {"utm_", "hsa_"};

struct Site {
  std::string_view domain;
  std::string_view names[2];
};
constexpr Site kSites[] = {
    {endpoints::kYouTubeSite, {"si"}},       {endpoints::kYouTubeShortLinkSite, {"si"}},
    {endpoints::kSpotifyPlayerSite, {"si"}}, {endpoints::kInstagramSite, {"igsh"}},
    {endpoints::kXSite, {"s", "t"}},         {endpoints::kTwitterSite, {"s", "t"}},
};

const Site* siteOf(std::string_view host) {
  const auto site = std::ranges::find_if(
      kSites, [host](const Site& each) { return isHostWithin(host, each.domain); });
  return site == std::end(kSites) ? nullptr : site;
}

bool isTracking(std::string_view name, const Site* site) {
  constexpr size_t kMaxName = 11;
  const std::string lowered = text::lowerASCII(name.substr(0, kMaxName + 1));
  if (std::ranges::binary_search(kNames, std::string_view(lowered))) return true;
  if (std::ranges::any_of(kPrefixes, [&](auto prefix) { return lowered.starts_with(prefix); }))
    return true;
  return site && !lowered.empty() &&
         std::ranges::find(site->names, lowered) != std::end(site->names);
}

}  // namespace

std::optional<URL> TrackingParameters::stripped(const URL& url) {
  if (!url.hasScheme("http") && !url.hasScheme("https")) return std::nullopt;
  const auto query = url.query();
  if (!query || query->empty()) return std::nullopt;
  const std::string host = text::lower(url.decodedHost().value_or(""));
  const Site* site = siteOf(host);

  std::string kept;
  bool hasKept = false;
  bool hasDropped = false;
  for (std::string_view rest = *query;;) {
    const size_t end = rest.find('&');
    const std::string_view item = rest.substr(0, end);
    if (isTracking(item.substr(0, item.find('=')), site)) {
      hasDropped = true;
    } else {
      if (hasKept) kept += '&';
      kept += item;
      hasKept = true;
    }
    if (end == std::string_view::npos) break;
    rest.remove_prefix(end + 1);
  }
  if (!hasDropped) return std::nullopt;

  const std::string_view whole = url.text();
  const auto begin = static_cast<size_t>(query->data() - whole.data());
  std::string result(whole.substr(0, hasKept ? begin : begin - 1));
  return URL::parse(result.append(kept).append(whole.substr(begin + query->size())));
}

}  // namespace orvel
