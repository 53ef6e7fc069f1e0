#pragma once

#include <string_view>

namespace orvel::filters {

// Walks the lines of a filter list. Lines end at U+000A to U+000D, U+0085, U+2028 and U+2029.
class FilterLines {
 public:
  explicit FilterLines(std::string_view text) : rest_(text) {}

  // The next line without the blanks (Unicode's space separators and the tab) around it; it may be
  // empty. False at the end of the text.
  bool next(std::string_view& line);

 private:
  std::string_view rest_;
};

}  // namespace orvel::filters
