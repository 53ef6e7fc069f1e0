#include "BrowserCore/TrackingParameters.h"

#include <gtest/gtest.h>

namespace orvel {
namespace {

std::string stripped(std::string_view url) {
  const auto result = TrackingParameters::stripped(URL::parse(url).value());
  return result ? result->text() : "nothing";
}

TEST(TrackingParameters, LeaveAddressesAndNothingElse) {
  const std::pair<const char*, const char*> cases[] = {
      {"https://a.test/p?fbclid=1", "https://a.test/p"},
      {"https://a.test/?utm_source=x&hsa_=y#f?utm_x", "https://a.test/#f?utm_x"},
      {"http://A.test?x=%zz|&GCLID&Y=a=b&_hsmi=", "http://A.test?x=%zz|&Y=a=b"},
      {"https://a.test/?a&&utm_x&b&", "https://a.test/?a&&b&"},
      {"https://a.test/?&fbclid=1", "https://a.test/?"},
      {"HTTPS://a.test/?Utm_Anything-at-all-however-long=1&k=1", "HTTPS://a.test/?k=1"},
      {"https://a.test/?fbclid=1?b=2", "https://a.test/"},
      {"https:?fbclid=1", "https:"},
      // Only on their own sites and below them.
      {"https://www.youtube.com/watch?v=1&si=2", "https://www.youtube.com/watch?v=1"},
      {"https://YOUTU.BE/1?SI=2", "https://YOUTU.BE/1"},
      {"https://open.spotify.com/track?si=2", "https://open.spotify.com/track"},
      {"https://spotify.com/track?si=2", "nothing"},
      {"https://www.instagram.com/p?igsh=2&si=1", "https://www.instagram.com/p?si=1"},
      {"https://x.com/a?s=20&t=1&u=2", "https://x.com/a?u=2"},
      {"https://mobile.twitter.com/a?T=1", "https://mobile.twitter.com/a"},
      {"https://netflix.com/a?s=20&t=1", "nothing"},
      // Nothing to remove.
      {"https://a.test/", "nothing"},
      {"https://a.test/?", "nothing"},
      {"https://a.test/?a=fbclid&xfbclid=1&fbclidx=1&utm=1&%66bclid=1", "nothing"},
      {"https://a.test/#?fbclid=1", "nothing"},
      {"ftp://a.test/?fbclid=1", "nothing"},
      {"data:text/html,?fbclid=1", "nothing"},
  };
  for (const auto& [url, expected] : cases) EXPECT_EQ(stripped(url), expected) << url;
}

TEST(TrackingParameters, AreAllKnownAndGoAtOnce) {
  std::string query = "https://a.test/?keep";
  for (const char* name :
       {"fbclid",  "gclid",    "gclsrc",    "dclid",       "gbraid",     "wbraid",
        "msclkid", "yclid",    "ttclid",    "twclid",      "igshid",     "li_fat_id",
        "mc_cid",  "mc_eid",   "mkt_tok",   "oly_anon_id", "oly_enc_id", "rb_clickid",
        "vero_id", "wickedid", "_openstat", "srsltid",     "_gl",        "ref_src",
        "__hsfp",  "__hssc",   "__hstc",    "_hsenc",      "_hsmi"})
    query.append("&").append(name).append("=1");
  EXPECT_EQ(stripped(query), "https://a.test/?keep");
  EXPECT_EQ(stripped(stripped(query)), "nothing");
}

}  // namespace
}  // namespace orvel
