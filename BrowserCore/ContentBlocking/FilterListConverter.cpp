#include "BrowserCore/ContentBlocking/FilterListConverter.h"

#include <utility>

#include "BrowserCore/ContentBlocking/FilterLines.h"
#include "BrowserCore/ContentBlocking/FilterListParser.h"

namespace orvel::FilterListConverter {

Output convert(std::string_view text, Options options) {
  filters::FilterListParser parser(options, text.size());
  filters::FilterLines lines(text);
  for (std::string_view line; lines.next(line);) parser.consume(line);
  return std::move(parser).finish();
}

}  // namespace orvel::FilterListConverter
