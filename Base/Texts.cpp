#include "Base/Texts.h"

#include <algorithm>

namespace orvel {

void useTextCatalogs(const std::filesystem::path& folder) {
  bindtextdomain(kTextDomain, folder.c_str());
  bind_textdomain_codeset(kTextDomain, "UTF-8");
  textdomain(kTextDomain);
}

std::string filled(std::string_view text, std::initializer_list<Placeholder> values) {
  std::string result;
  while (!text.empty()) {
    const size_t open = text.find('{');
    const size_t close = text.find('}', open);
    if (close == std::string_view::npos) break;
    const auto name = text.substr(open + 1, close - open - 1);
    const auto* found = std::ranges::find(values, name, &Placeholder::name);
    result += text.substr(0, open);
    if (found == values.end()) {
      // An opening brace alone: what follows it may be a placeholder.
      result += '{';
      text.remove_prefix(open + 1);
    } else {
      result += found->value;
      text.remove_prefix(close + 1);
    }
  }
  return result += text;
}

std::string counted(std::string_view text, uint64_t count) {
  return filled(text, {{"count", std::to_string(count)}});
}

}  // namespace orvel
