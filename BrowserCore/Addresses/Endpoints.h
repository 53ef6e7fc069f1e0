#pragma once

#include <string_view>

// Every host of the public services that the program talks to. The addresses that name a site only
// because a person goes there (links of an extension store, keyword searches) stand here too, so
// that a change of host is a change of this file.
namespace orvel::endpoints {

// Search and suggestion addresses: the encoded query follows them as their last part.
inline constexpr std::string_view kGoogleSearch = "https://www.google.com/search?q=";
inline constexpr std::string_view kGoogleSuggestions =
    "https://suggestqueries.google.com/complete/search?client=firefox&q=";
inline constexpr std::string_view kDuckDuckGoSearch = "https://duckduckgo.com/?q=";
inline constexpr std::string_view kDuckDuckGoSuggestions =
    "https://duckduckgo.com/ac/?type=list&q=";
inline constexpr std::string_view kKagiSearch = "https://kagi.com/search?q=";
inline constexpr std::string_view kKagiSuggestions = "https://kagi.com/api/autosuggest?q=";
inline constexpr std::string_view kBingSearch = "https://www.bing.com/search?q=";
inline constexpr std::string_view kBingSuggestions = "https://api.bing.com/osjson.aspx?query=";
inline constexpr std::string_view kEcosiaSearch = "https://www.ecosia.org/search?q=";
inline constexpr std::string_view kStartpageSearch = "https://www.startpage.com/do/search?q=";

// The templates of the built-in keyword searches: "%s" is where the query goes.
inline constexpr std::string_view kYouTubeTemplate =
    "https://www.youtube.com/results?search_query=%s";
inline constexpr std::string_view kGitHubTemplate = "https://github.com/search?q=%s";
inline constexpr std::string_view kWikipediaTemplate =
    "https://en.wikipedia.org/w/index.php?search=%s";
inline constexpr std::string_view kAppleMapsTemplate = "https://maps.apple.com/?q=%s";
inline constexpr std::string_view kAmazonTemplate = "https://www.amazon.com/s?k=%s";
inline constexpr std::string_view kRedditTemplate = "https://www.reddit.com/search/?q=%s";
inline constexpr std::string_view kXTemplate = "https://x.com/search?q=%s";
inline constexpr std::string_view kGoogleImagesTemplate =
    "https://www.google.com/search?tbm=isch&q=%s";
inline constexpr std::string_view kStackOverflowTemplate = "https://stackoverflow.com/search?q=%s";
inline constexpr std::string_view kNpmTemplate = "https://www.npmjs.com/search?q=%s";

// The daily reference rates of the European Central Bank.
inline constexpr std::string_view kCurrencyRates =
    "https://www.ecb.europa.eu/stats/eurofxref/eurofxref-daily.xml";

// Filter lists.
inline constexpr std::string_view kEasyList = "https://easylist.to/easylist/easylist.txt";
inline constexpr std::string_view kEasyPrivacy = "https://easylist.to/easylist/easyprivacy.txt";
inline constexpr std::string_view kCookieNotices =
    "https://secure.fanboy.co.nz/fanboy-cookiemonster.txt";

// Extension stores: the hosts of their listings, and what the address of a download begins with.
inline constexpr std::string_view kChromeStoreHost = "chromewebstore.google.com";
inline constexpr std::string_view kFormerChromeStoreHost = "chrome.google.com";
inline constexpr std::string_view kChromeDownload =
    "https://clients2.google.com/service/update2/crx";
inline constexpr std::string_view kFirefoxAddonsHost = "addons.mozilla.org";
inline constexpr std::string_view kFirefoxDownload =
    "https://addons.mozilla.org/firefox/downloads/latest/";

// Sites with tracking parameters of their own. Bare domains, so that "www." is a subdomain.
inline constexpr std::string_view kYouTubeSite = "youtube.com";
inline constexpr std::string_view kYouTubeShortLinkSite = "youtu.be";
inline constexpr std::string_view kSpotifyPlayerSite = "open.spotify.com";
inline constexpr std::string_view kInstagramSite = "instagram.com";
inline constexpr std::string_view kXSite = "x.com";
inline constexpr std::string_view kTwitterSite = "twitter.com";

}  // namespace orvel::endpoints
