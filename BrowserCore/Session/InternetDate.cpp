#include "BrowserCore/Session/InternetDate.h"

#include <fmt/format.h>

#include <algorithm>

namespace orvel::internetDate {

namespace {

using namespace std::chrono;

constexpr sys_seconds kFirst = sys_days(year(0) / January / 1);
constexpr sys_seconds kLast = sys_days(year(10000) / January / 1) - seconds(1);

// Takes fields of fixed width off the front of a text.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  std::optional<int> number(size_t width, int highest) {
    if (rest_.size() < width) return std::nullopt;
    int value = 0;
    for (const char c : rest_.substr(0, width)) {
      if (c < '0' || c > '9') return std::nullopt;
      value = value * 10 + (c - '0');
    }
    if (value > highest) return std::nullopt;
    rest_.remove_prefix(width);
    return value;
  }

  bool skip(std::string_view anyOf) {
    if (rest_.empty() || anyOf.find(rest_.front()) == std::string_view::npos) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool isAtEnd() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};

// "Z" or hours and minutes east of UTC.
std::optional<minutes> offset(Scanner& scanner) {
  if (scanner.skip("Zz")) return minutes(0);
  const bool isEast = scanner.skip("+");
  if (!isEast && !scanner.skip("-")) return std::nullopt;
  const auto hour = scanner.number(2, 23);
  const bool hasColon = scanner.skip(":");
  const auto minute = scanner.number(2, 59);
  if (!hour || !hasColon || !minute) return std::nullopt;
  const minutes total(*hour * 60 + *minute);
  return isEast ? total : -total;
}

}  // namespace

std::string text(Date date) {
  const sys_seconds moment = std::clamp(floor<seconds>(date), kFirst, kLast);
  const sys_days midnight = floor<days>(moment);
  const year_month_day day(midnight);
  const hh_mm_ss time(moment - midnight);
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", static_cast<int>(day.year()),
                     static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()),
                     time.hours().count(), time.minutes().count(), time.seconds().count());
}

std::optional<Date> parse(std::string_view text) {
  Scanner scanner(text);
  const auto y = scanner.number(4, 9999);
  if (!y || !scanner.skip("-")) return std::nullopt;
  const auto m = scanner.number(2, 12);
  if (!m || !scanner.skip("-")) return std::nullopt;
  const auto d = scanner.number(2, 31);
  if (!d || !scanner.skip("Tt")) return std::nullopt;
  const auto hour = scanner.number(2, 23);
  if (!hour || !scanner.skip(":")) return std::nullopt;
  const auto minute = scanner.number(2, 59);
  if (!minute || !scanner.skip(":")) return std::nullopt;
  const auto second = scanner.number(2, 59);
  if (!second) return std::nullopt;
  const auto east = offset(scanner);
  const year_month_day day(year(*y), month(static_cast<unsigned>(*m)),
                           std::chrono::day(static_cast<unsigned>(*d)));
  if (!east || !scanner.isAtEnd() || !day.ok()) return std::nullopt;
  const sys_seconds moment =
      sys_days(day) + hours(*hour) + minutes(*minute) + seconds(*second) - *east;
  if (moment < kFirst || moment > kLast) return std::nullopt;
  return moment;
}

}  // namespace orvel::internetDate
