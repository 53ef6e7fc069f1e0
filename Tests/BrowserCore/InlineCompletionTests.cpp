#include "BrowserCore/InlineCompletion.h"

#include <gtest/gtest.h>

namespace orvel {
namespace {

std::string completed(std::string_view typed, std::vector<const char*> texts) {
  std::vector<URL> urls;
  for (const char* text : texts) urls.push_back(URL::parse(text).value());
  return InlineCompletion::complete(typed, urls).value_or("none");
}

TEST(InlineCompletion, CompletesHostsAndWithASlashPaths) {
  struct Case {
    const char* typed;
    std::vector<const char*> urls;
    const char* expected;
  };
  const Case cases[] = {
      {"exa", {"https://www.example.com/some/page"}, "example.com"},
      {"Exa", {"https://www.Example.com/"}, "Example.com"},
      {"www.exa", {"https://www.example.com/"}, "www.example.com"},
      {"www.exa", {"https://example.com/"}, "none"},
      {"exa",
       {"about:blank", "https://exb.com", "https://exact.org", "https://example.com"},
       "exact.org"},
      {"example.com/d",
       {"https://example.com/", "https://www.example.com/docs/"},
       "example.com/docs"},
      {"example.com/d", {"https://example.com/Docs"}, "none"},
      {"example.com/D", {"https://example.com/docs"}, "example.com/Docs"},
      {"www.example.com/d", {"https://www.example.com/docs?q"}, "www.example.com/docs"},
      {"e", {"https://example.com"}, "none"},
      {"", {"https://example.com"}, "none"},
      {"exa mple", {"https://exa"}, "none"},
      {"exa\u3000", {"https://example.com"}, "none"},
      {"http://exa", {"https://example.com"}, "none"},
      {"exa", {}, "none"},
      {"example.co", {"https://example.com/", "https://example.com.br/"}, "example.com"},
      {"mü", {"https://MÜNCHEN.de"}, "münchen.de"},
      // A text that names a page exactly is left alone.
      {"example.com", {"https://example.com.br/", "https://example.com/"}, "none"},
      {"example.com/", {"https://example.com/docs", "https://example.com"}, "none"},
      {"example.com/docs/", {"https://www.example.com/docs", "https://example.com/docs/a"}, "none"},
      {"www.example.com", {"https://www.example.com"}, "none"},
  };
  for (const auto& [typed, urls, expected] : cases)
    EXPECT_EQ(completed(typed, urls), expected) << typed;
}

TEST(InlineCompletion, BeginsWithWhatWasTyped) {
  const std::vector<const char*> urls = {"https://www.Example.com/Path/To", "https://exact.org/a/",
                                         "http://münchen.de/straße", "https://www.w.org"};
  for (const char* url : urls) {
    const std::string whole = std::string(url).substr(std::string_view(url).find("://") + 3);
    for (size_t size = 0; size <= whole.size(); ++size) {
      const std::string typed = whole.substr(0, size);
      const std::string text = completed(typed, urls);
      EXPECT_TRUE(text == "none" || (text.starts_with(typed) && text.size() > typed.size()))
          << typed << " became " << text;
    }
  }
}

}  // namespace
}  // namespace orvel
