#include "BrowserCore/Text/Characters.h"

#include <unicode/brkiter.h>
#include <unicode/utext.h>

#include <limits>

namespace orvel::text {

namespace {

// The characters of ASCII without carriage returns are its bytes. One byte past the last wanted
// character is looked at: a combining mark there would still belong to it.
bool isBytePerCharacter(std::string_view text, size_t limit) {
  const std::string_view seen = limit < text.size() ? text.substr(0, limit + 1) : text;
  return std::all_of(seen.begin(), seen.end(), [](char c) { return c >= 0 && c != '\r'; });
}

// Making an iterator loads its rules, so each thread keeps one.
icu::BreakIterator& characterIterator() {
  thread_local const std::unique_ptr<icu::BreakIterator> kept = [] {
    UErrorCode status = U_ZERO_ERROR;
    return std::unique_ptr<icu::BreakIterator>(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  }();
  return *kept;
}

// Calls `visit` with the end of each of the first `limit` characters.
template <typename Visit>
void forEachCharacterEnd(std::string_view text, size_t limit, Visit visit) {
  if (isBytePerCharacter(text, limit)) {
    for (size_t end = 1; end <= std::min(limit, text.size()); ++end) visit(end);
    return;
  }
  text = text.substr(0, std::numeric_limits<int32_t>::max());
  UErrorCode status = U_ZERO_ERROR;
  UText bytes = UTEXT_INITIALIZER;
  utext_openUTF8(&bytes, text.data(), static_cast<int64_t>(text.size()), &status);
  icu::BreakIterator& iterator = characterIterator();
  iterator.setText(&bytes, status);
  for (size_t i = 0; i < limit; ++i) {
    const int32_t end = iterator.next();
    if (end == icu::BreakIterator::DONE) break;
    visit(static_cast<size_t>(end));
  }
  utext_close(&bytes);
}

}  // namespace

std::vector<size_t> characterEnds(std::string_view text, size_t limit) {
  std::vector<size_t> ends;
  forEachCharacterEnd(text, limit, [&ends](size_t end) { ends.push_back(end); });
  return ends;
}

size_t characterCount(std::string_view text, size_t limit) {
  size_t count = 0;
  forEachCharacterEnd(text, limit, [&count](size_t) { ++count; });
  return count;
}

}  // namespace orvel::text
