#pragma once

#include <fmt/format.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "BrowserCore/Date.h"

namespace orvel {

// A value that stands in the log only as a hash: equal values give equal texts within one run of
// the program, and nothing tells the value itself. For hosts and other data of pages.
struct Masked {
  std::string_view value;
};

// A log of one category, written to the system's journal and to a bounded memory of this run's
// lines. Lines may come from any thread.
class Log {
 public:
  enum class Level { Debug, Info, Default, Error, Fault };

  struct Entry {
    Date date;
    Level level;
    std::string category;
    std::string message;
  };

  // `category` must outlive the log: a literal.
  constexpr explicit Log(const char* category) : category_(category) {}

  template <class... Args>
  void info(fmt::format_string<Args...> format, Args&&... args) const {
    write(Level::Info, fmt::format(format, std::forward<Args>(args)...));
  }
  template <class... Args>
  void notice(fmt::format_string<Args...> format, Args&&... args) const {
    write(Level::Default, fmt::format(format, std::forward<Args>(args)...));
  }
  template <class... Args>
  void error(fmt::format_string<Args...> format, Args&&... args) const {
    write(Level::Error, fmt::format(format, std::forward<Args>(args)...));
  }
  template <class... Args>
  void fault(fmt::format_string<Args...> format, Args&&... args) const {
    write(Level::Fault, fmt::format(format, std::forward<Args>(args)...));
  }

  void write(Level level, std::string message) const;

  // The lines of this run that are still in memory, oldest first: at most 4,096, each cut at 2,048
  // bytes.
  static std::vector<Entry> recent();

  static const Log app;
  static const Log navigation;
  static const Log session;
  static const Log download;
  static const Log diagnostics;

 private:
  const char* category_;
};

inline constexpr Log Log::app{"app"};
inline constexpr Log Log::navigation{"Navigation"};
inline constexpr Log Log::session{"Session"};
inline constexpr Log Log::download{"Download"};
inline constexpr Log Log::diagnostics{"Diagnostics"};

namespace detail {
std::string mask(std::string_view value);
}

}  // namespace orvel

template <>
struct fmt::formatter<orvel::Masked> : fmt::formatter<std::string_view> {
  auto format(const orvel::Masked& masked, fmt::format_context& context) const {
    return fmt::formatter<std::string_view>::format(orvel::detail::mask(masked.value), context);
  }
};
