#include "Support/Updates/LinkTarget.h"

#include <vector>

#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

// The system follows no more links for one path.
constexpr int kMaxLinks = 40;
// Nor is a path ever longer.
constexpr int kMaxSteps = 4096;

}  // namespace

bool leadsOut(std::string_view link, std::string_view target,
              const std::function<std::optional<std::string>(const std::string& path)>& targetOf) {
  // Where the way stands, and the pieces that are still to go, the next one last.
  const size_t slash = link.rfind('/');
  std::string place(slash == std::string_view::npos ? "" : link.substr(0, slash));
  std::vector<std::string> ahead;
  // Returns whether the target begins at the root.
  const auto follow = [&](std::string_view path) {
    const auto pieces = text::splitNonEmpty(path, '/');
    ahead.insert(ahead.end(), pieces.rbegin(), pieces.rend());
    return path.starts_with('/');
  };

  if (follow(target)) return true;
  int links = 1;
  for (int steps = 0; !ahead.empty(); ++steps) {
    if (steps == kMaxSteps) return true;
    const std::string piece = std::move(ahead.back());
    ahead.pop_back();
    if (piece == ".") continue;
    const std::string parent = place;
    if (piece == "..") {
      if (place.empty()) return true;
      const size_t last = place.rfind('/');
      place.resize(last == std::string::npos ? 0 : last);
      continue;
    }
    place += place.empty() ? piece : "/" + piece;
    if (const auto next = targetOf(place)) {
      if (++links > kMaxLinks) return false;
      place = parent;
      if (follow(*next)) return true;
    }
  }
  return false;
}

}  // namespace orvel
