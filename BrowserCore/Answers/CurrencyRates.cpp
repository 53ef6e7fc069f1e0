#include "BrowserCore/Answers/CurrencyRates.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>

#include "BrowserCore/Answers/DecimalNumber.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

bool isSpace(UChar32 c) { return u_isUWhiteSpace(c); }
bool isDigit(UChar32 c) { return u_isdigit(c); }
bool isRatePart(UChar32 c) { return c == '.' || isDigit(c); }
bool isUpperASCII(UChar32 c) { return c >= 'A' && c <= 'Z'; }

// Walks over a valid UTF-8 text from one occurrence of an attribute to the next.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  bool findBehind(std::string_view attribute) {
    const size_t found = rest_.find(attribute);
    if (found == std::string_view::npos) return false;
    rest_.remove_prefix(found + attribute.size());
    return true;
  }

  bool skip(std::string_view literal) {
    if (!rest_.starts_with(literal)) return false;
    rest_.remove_prefix(literal.size());
    return true;
  }

  bool skipQuote() { return skip("'") || skip("\""); }

  // The longest run of such characters that is no longer than `most`.
  std::string_view run(bool (*belongs)(UChar32), size_t most = std::string_view::npos) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(rest_.data());
    const auto size = static_cast<int64_t>(rest_.size());
    int64_t end = 0;
    for (int64_t next = 0; next < size && most > 0; end = next, --most) {
      UChar32 c = 0;
      U8_NEXT(bytes, next, size, c);
      if (!belongs(c)) break;
    }
    const std::string_view found = rest_.substr(0, static_cast<size_t>(end));
    rest_.remove_prefix(found.size());
    return found;
  }

  // `count` such characters and not fewer.
  bool skip(bool (*belongs)(UChar32), size_t count) {
    for (; count > 0; --count)
      if (run(belongs, 1).empty()) return false;
    return true;
  }

  const char* position() const { return rest_.data(); }

 private:
  std::string_view rest_;
};

// Every currency=['"]([A-Z]{3})['"]\s+rate=['"]([\d.]+)['"].
CurrencyRates::Table rates(std::string_view text) {
  CurrencyRates::Table table;
  for (Scanner scanner(text); scanner.findBehind("currency=");) {
    if (!scanner.skipQuote()) continue;
    const std::string_view code = scanner.run(isUpperASCII, 3);
    if (code.size() != 3 || !scanner.skipQuote() || scanner.run(isSpace).empty() ||
        !scanner.skip("rate=") || !scanner.skipQuote())
      continue;
    const auto rate = decimalNumber::parse(scanner.run(isRatePart));
    if (rate && *rate > 0 && scanner.skipQuote()) table.insert_or_assign(std::string(code), *rate);
  }
  return table;
}

// The first time=['"](\d{4}-\d{2}-\d{2})['"].
std::optional<std::string> day(std::string_view text) {
  for (Scanner scanner(text); scanner.findBehind("time=");) {
    if (!scanner.skipQuote()) continue;
    const char* begin = scanner.position();
    if (!scanner.skip(isDigit, 4) || !scanner.skip("-") || !scanner.skip(isDigit, 2) ||
        !scanner.skip("-") || !scanner.skip(isDigit, 2))
      continue;
    const char* end = scanner.position();
    if (scanner.skipQuote()) return std::string(begin, end);
  }
  return std::nullopt;
}

}  // namespace

CurrencyRates::CurrencyRates(Table perEuro, std::optional<std::string> date)
    : perEuro_(std::move(perEuro)), date_(std::move(date)) {
  perEuro_.try_emplace("EUR", 1.0);
}

std::optional<CurrencyRates> CurrencyRates::parse(std::string_view ecbXML) {
  if (!text::isValidUTF8(ecbXML)) return std::nullopt;
  Table table = rates(ecbXML);
  if (!table.contains("USD")) return std::nullopt;
  return CurrencyRates(std::move(table), day(ecbXML));
}

std::optional<double> CurrencyRates::convert(double amount, std::string_view from,
                                             std::string_view to) const {
  const auto source = perEuro_.find(from);
  const auto target = perEuro_.find(to);
  if (source == perEuro_.end() || target == perEuro_.end()) return std::nullopt;
  return amount / source->second * target->second;
}

}  // namespace orvel
