#include "BrowserCore/SelfUpdate/UpdateRelease.h"

#include <charconv>
#include <utility>

#include "BrowserCore/Session/JSONDecoder.h"

namespace orvel {

std::optional<UpdateRelease> UpdateRelease::decode(std::string_view json) {
  const auto document = JSONCoding::Document::parse(json);
  if (!document) return std::nullopt;

  JSONCoding::Decoder decoder;
  const JSONCoding::Value root = document->root();
  std::string version;
  int64_t build = 0;
  std::string page;
  std::optional<std::string> archive;
  std::optional<std::string> signature;
  const bool isComplete = decoder.field(root, "version", version) &&
                          decoder.field(root, "build", build) && decoder.field(root, "url", page) &&
                          decoder.field(root, "archive", archive) &&
                          decoder.field(root, "signature", signature);
  if (!isComplete) return std::nullopt;

  auto url = URL::parse(page);
  auto archiveURL = archive ? URL::parse(*archive) : std::nullopt;
  if (!url || archive.has_value() != archiveURL.has_value()) return std::nullopt;
  return UpdateRelease{std::move(version), build, *std::move(url), std::move(archiveURL),
                       std::move(signature)};
}

std::optional<int64_t> buildNumber(std::string_view text) {
  int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc{} || last != end) return std::nullopt;
  return number;
}

}  // namespace orvel
