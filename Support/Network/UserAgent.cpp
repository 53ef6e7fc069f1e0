#include "Support/Network/UserAgent.h"

#include <fmt/format.h>

#include "BrowserCore/Text/Text.h"

namespace orvel::UserAgent {

std::string safariSuffix(std::string_view version) {
  const auto numbers = text::splitNonEmpty(version, '.');
  const std::string shortVersion = numbers.size() < 2
                                       ? fmt::format("{}.0", version)
                                       : fmt::format("{}.{}", numbers[0], numbers[1]);
  return fmt::format("Version/{} Safari/605.1.15", shortVersion);
}

}  // namespace orvel::UserAgent
