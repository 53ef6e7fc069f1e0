#include "BrowserCore/Answers/ConversionPhrase.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace orvel::conversionPhrase {

namespace {

bool isSpace(UChar32 c) { return c >= 0 && u_isUWhiteSpace(c); }
bool isDigit(UChar32 c) { return c >= 0 && u_isdigit(c); }
bool isAmountPart(UChar32 c) { return c == '.' || c == ',' || isDigit(c); }
bool isUnitPart(UChar32 c) { return !isSpace(c) && !isDigit(c); }
bool isPrefixPart(UChar32 c) { return isUnitPart(c) && c != '.' && c != ',' && c != '-'; }

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  // The longest run of such characters, possibly none.
  std::string_view run(bool (*belongs)(UChar32)) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(text_.data());
    const auto size = static_cast<int64_t>(text_.size());
    const int64_t begin = position_;
    for (int64_t next = begin; next < size; position_ = next) {
      UChar32 c = 0;
      U8_NEXT(bytes, next, size, c);
      if (!belongs(c)) break;
    }
    return text_.substr(static_cast<size_t>(begin), static_cast<size_t>(position_ - begin));
  }

  bool skipSpace() { return !run(isSpace).empty(); }

  bool skip(char c) {
    if (isAtEnd() || text_[position()] != c) return false;
    ++position_;
    return true;
  }

  size_t position() const { return static_cast<size_t>(position_); }

  bool isAtEnd() const { return position_ == static_cast<int64_t>(text_.size()); }

 private:
  std::string_view text_;
  int64_t position_ = 0;
};

bool isLink(std::string_view word) { return word == "to" || word == "in" || word == "as"; }

// What follows "to", up to the end of the text.
std::optional<std::string_view> readTarget(Scanner& scanner) {
  if (!scanner.skipSpace()) return std::nullopt;
  const std::string_view target = scanner.run(isUnitPart);
  scanner.skipSpace();
  if (target.empty() || !scanner.isAtEnd()) return std::nullopt;
  return target;
}

std::optional<std::string_view> readLinkAndTarget(Scanner& scanner) {
  if (!scanner.skipSpace() || !isLink(scanner.run(isUnitPart))) return std::nullopt;
  return readTarget(scanner);
}

}  // namespace

std::optional<UnitPhrase> readUnits(std::string_view text) {
  Scanner scanner(text);
  scanner.skipSpace();
  const size_t begin = scanner.position();
  scanner.skip('-');
  const bool hasAmount = !scanner.run(isAmountPart).empty();
  const std::string_view amount = text.substr(begin, scanner.position() - begin);
  scanner.skipSpace();
  const std::string_view source = scanner.run(isUnitPart);
  if (!hasAmount || source.empty()) return std::nullopt;
  const auto target = readLinkAndTarget(scanner);
  if (!target) return std::nullopt;
  return UnitPhrase{amount, source, *target};
}

std::optional<CurrencyPhrase> readCurrencies(std::string_view text) {
  Scanner scanner(text);
  scanner.skipSpace();
  const std::string_view prefix = scanner.run(isPrefixPart);
  scanner.skipSpace();
  const std::string_view amount = scanner.run(isAmountPart);
  if (amount.empty() || amount.front() == '.' || amount.front() == ',') return std::nullopt;
  const bool isSpaced = scanner.skipSpace();
  const std::string_view word = scanner.run(isUnitPart);
  Scanner behindWord = scanner;
  if (const auto target = readLinkAndTarget(scanner))
    return CurrencyPhrase{prefix, amount, word, *target};
  if (!isSpaced || !isLink(word)) return std::nullopt;
  const auto target = readTarget(behindWord);
  if (!target) return std::nullopt;
  return CurrencyPhrase{prefix, amount, {}, *target};
}

}  // namespace orvel::conversionPhrase
