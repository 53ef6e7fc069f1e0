#include "DesignSystem/ShownText.h"

#include <glib.h>

#include "Base/GRef.h"

namespace orvel {

std::string shownText(std::string_view text, size_t limit) {
  const bool isCut = text.size() > limit;
  if (isCut) {
    // Back to the beginning of the character that the limit falls into.
    size_t end = limit;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    text = text.substr(0, end);
  }
  std::string result(text);
  for (char& byte : result)
    if (g_ascii_iscntrl(byte)) byte = ' ';
  const GText valid(g_utf8_make_valid(result.data(), static_cast<gssize>(result.size())));
  result = valid.get();
  if (isCut) result += "…";
  return result;
}

}  // namespace orvel
