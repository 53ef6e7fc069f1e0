#pragma once

#include <string>
#include <string_view>

namespace orvel {

// The text as it stands in HTML, between tags and in quoted attributes.
[[nodiscard]] inline std::string escapedMarkup(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (const char c : text) switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        result += c;
    }
  return result;
}

}  // namespace orvel
