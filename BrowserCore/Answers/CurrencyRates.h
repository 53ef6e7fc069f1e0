#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace orvel {

// One day's exchange rates as the European Central Bank publishes them.
class CurrencyRates {
 public:
  using Table = std::map<std::string, double, std::less<>>;

  // `date` is the day of publication as YYYY-MM-DD. "EUR" is added as 1 unless the table has it.
  explicit CurrencyRates(Table perEuro, std::optional<std::string> date = std::nullopt);

  // Reads the daily reference-rate document. It is searched for attributes, not parsed as XML: each
  // currency='…' directly followed by rate='…' counts, a later one for the same code replaces an
  // earlier, and rates that are no number above 0 are skipped. Absent when the bytes are no UTF-8
  // or hold no rate for "USD".
  [[nodiscard]] static std::optional<CurrencyRates> parse(std::string_view ecbXML);

  // Crosses through the euro. Absent when there is no rate for either code.
  [[nodiscard]] std::optional<double> convert(double amount, std::string_view from,
                                              std::string_view to) const;

  // Units of each upper-case currency code for one euro; always holds "EUR".
  const Table& perEuro() const { return perEuro_; }
  const std::optional<std::string>& date() const { return date_; }

  friend bool operator==(const CurrencyRates&, const CurrencyRates&) = default;

 private:
  Table perEuro_;
  std::optional<std::string> date_;
};

}  // namespace orvel
