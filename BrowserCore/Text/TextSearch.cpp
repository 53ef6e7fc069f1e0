#include "BrowserCore/Text/TextSearch.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>

#include <algorithm>

#include "BrowserCore/Text/Text.h"

namespace orvel::text {

namespace {

bool isASCII(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return (c & 0x80) == 0; });
}

constexpr char lowerLetter(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
}

// `needle` is in lower case. A byte beyond ASCII is equal to itself alone.
bool containsLetters(std::string_view text, std::string_view needle) {
  if (needle.size() > text.size()) return false;
  const char first = needle.front();
  const std::string_view rest = needle.substr(1);
  const char* const end = text.data() + text.size() - rest.size();
  for (const char* at = text.data(); at != end; ++at)
    if (lowerLetter(*at) == first && std::equal(rest.begin(), rest.end(), at + 1,
                                                [](char a, char b) { return a == lowerLetter(b); }))
      return true;
  return false;
}

std::string composed(const std::string& text) {
  UErrorCode status = U_ZERO_ERROR;
  const auto* normalizer = icu::Normalizer2::getNFCInstance(status);
  if (U_FAILURE(status) || normalizer->isNormalizedUTF8(text, status)) return text;
  std::string result;
  icu::StringByteSink<std::string> sink(&result);
  normalizer->normalizeUTF8(0, text, sink, nullptr, status);
  return U_SUCCESS(status) ? result : text;
}

bool isLocaleTurkic() {
  const std::string_view language = icu::Locale::getDefault().getLanguage();
  return language == "tr" || language == "az";
}

}  // namespace

Needle::Needle(std::string_view text)
    : letterI_(isLocaleTurkic() ? LetterI::Turkic : LetterI::Common),
      folded_(folded(text)),
      isASCII_(text::isASCII(folded_)) {}

std::string Needle::folded(std::string_view text) const {
  const bool isTurkic = letterI_ == LetterI::Turkic;
  if (!isTurkic && text::isASCII(text)) return lowerASCII(text);
  std::string result;
  icu::StringByteSink<std::string> sink(&result);
  UErrorCode status = U_ZERO_ERROR;
  const uint32_t options = isTurkic ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT;
  icu::CaseMap::utf8Fold(options, composed(repairedUTF8(text)), sink, nullptr, status);
  return composed(result);
}

bool Needle::isIn(std::string_view text) const {
  if (folded_.empty()) return false;
  text = text.substr(0, kMaxSearched);
  if (letterI_ == LetterI::Common && text::isASCII(text))
    return isASCII_ && containsLetters(text, folded_);
  return folded(text).find(folded_) != std::string::npos;
}

}  // namespace orvel::text
