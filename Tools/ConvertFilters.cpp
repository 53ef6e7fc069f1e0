#include <fmt/core.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "BrowserCore/ContentBlocking/FilterListConverter.h"
#include "Tools/Operations.h"

namespace orvel::tools {

namespace {

struct Arguments {
  std::string list;
  FilterListConverter::Options options;
};

std::optional<Arguments> parse(int count, char** arguments) {
  Arguments parsed;
  for (int i = 0; i < count; ++i) {
    const std::string_view argument = arguments[i];
    if (argument == "--no-cosmetic") {
      parsed.options.includeCosmetic = false;
    } else if (argument == "--max-rules" && i + 1 < count) {
      const std::string_view number = arguments[++i];
      const char* const end = number.data() + number.size();
      const auto result = std::from_chars(number.data(), end, parsed.options.maxRules);
      if (result.ec != std::errc{} || result.ptr != end || parsed.options.maxRules < 0)
        return std::nullopt;
    } else if (parsed.list.empty() && !argument.empty() && !argument.starts_with("--")) {
      parsed.list = argument;
    } else {
      return std::nullopt;
    }
  }
  if (parsed.list.empty()) return std::nullopt;
  return parsed;
}

std::optional<std::string> contentsOf(const std::string& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                             &std::fclose);
  if (!file) return std::nullopt;
  std::string contents;
  char block[64 * 1024];
  while (const size_t size = std::fread(block, 1, sizeof(block), file.get()))
    contents.append(block, size);
  if (std::ferror(file.get()) != 0) return std::nullopt;
  return contents;
}

}  // namespace

int convertFilters(int count, char** arguments) {
  const auto parsed = parse(count, arguments);
  if (!parsed) {
    fmt::print(stderr, "usage: orvel-core convert-filters LIST [--no-cosmetic] [--max-rules N]\n");
    return 2;
  }
  const auto text = contentsOf(parsed->list);
  if (!text) {
    fmt::print(stderr, "orvel-core: cannot read {}: {}\n", parsed->list, std::strerror(errno));
    return 1;
  }
  const auto output = FilterListConverter::convert(*text, parsed->options);
  const std::string json = encodedJSON(output.rules);
  if (std::fwrite(json.data(), 1, json.size(), stdout) != json.size() || std::fflush(stdout) != 0) {
    fmt::print(stderr, "orvel-core: cannot write the rules\n");
    return 1;
  }
  fmt::print(stderr, "{{\"rules\":{},\"skipped\":{}}}\n", output.rules.size(), output.skipped);
  return 0;
}

}  // namespace orvel::tools
