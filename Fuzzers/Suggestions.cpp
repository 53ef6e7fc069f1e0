// A search engine's reply.

#include <cstdlib>

#include "BrowserCore/SearchEngine.h"
#include "BrowserCore/Text.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view reply(reinterpret_cast<const char*>(data), size);
  for (const std::string& text : orvel::SearchEngine::suggestions(reply))
    if (!orvel::text::isValidUTF8(text)) std::abort();
  return 0;
}
