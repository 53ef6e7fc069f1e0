#include <fcntl.h>
#include <fmt/format.h>
#include <sodium/utils.h>

#include <charconv>
#include <filesystem>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "BrowserCore/SelfUpdate/SigningKeys.h"
#include "BrowserCore/SelfUpdate/UpdateRelease.h"
#include "BrowserCore/SelfUpdate/UpdateSwap.h"
#include "Support/Updates/BundleManifest.h"
#include "Support/Updates/FileBytes.h"
#include "Support/Updates/UpdatePlace.h"
#include "Support/Updates/UpdateSignature.h"
#include "Support/Updates/UpdateStage.h"
#include "Tools/Operations.h"

namespace orvel::tools {

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

constexpr int kUsageError = 2;

// A command's options, each with a value and given once, and its one other argument.
struct Arguments {
  std::map<std::string, std::string, std::less<>> options;
  std::string path;

  const std::string& operator[](const char* name) const { return options.at(name); }
};

// Absent unless all of `names` and a path are there, and nothing else.
std::optional<Arguments> parse(int count, char** arguments, const std::set<std::string>& names) {
  Arguments parsed;
  bool hasPath = false;
  for (int i = 0; i < count; ++i) {
    const std::string argument = arguments[i];
    if (names.contains(argument)) {
      if (++i == count || !parsed.options.emplace(argument, arguments[i]).second)
        return std::nullopt;
    } else if (argument.starts_with("--") || hasPath) {
      return std::nullopt;
    } else {
      parsed.path = argument;
      hasPath = true;
    }
  }
  if (!hasPath || parsed.options.size() != names.size()) return std::nullopt;
  return parsed;
}

int refuse(std::string_view reason) {
  std::cerr << "orvel-core: " << reason << '\n';
  return kUsageError;
}

int updateMessage(int count, char** arguments) {
  const auto given = parse(count, arguments, {"--build"});
  const auto build = given ? buildNumber((*given)["--build"]) : std::nullopt;
  if (!build) return refuse("update-message --build N ARCHIVE");
  const auto message = UpdateSignature::message(given->path, *build);
  if (!message) return refuse("the archive cannot be read");
  std::string text(2 * message->size() + 1, '\0');
  sodium_bin2hex(text.data(), text.size(), reinterpret_cast<const unsigned char*>(message->data()),
                 message->size());
  text.back() = '\n';
  std::cout << text;
  return 0;
}

ordered_json answerOf(const StageResult& result) {
  if (result)
    return {{"app", result->app.string()}, {"version", result->version}, {"build", result->build}};
  const auto* failure = std::get_if<UpdateFailure>(&result.error());
  return {{"error", failure ? nameOf(*failure) : "fileSystem"}};
}

int stageUpdate(int count, char** arguments) {
  const auto given = parse(count, arguments,
                           {"--folder", "--bundle-id", "--public-key", "--build", "--signature"});
  const auto build = given ? buildNumber((*given)["--build"]) : std::nullopt;
  if (!build)
    return refuse(
        "stage-update --folder F --bundle-id ID --public-key BASE64 --build N --signature BASE64 "
        "ARCHIVE");
  std::error_code error;
  const UpdateStage stage{std::filesystem::absolute((*given)["--folder"], error),
                          (*given)["--bundle-id"], (*given)["--public-key"]};
  const auto result = stage.stage(given->path, *build, (*given)["--signature"]);
  const ordered_json answer = answerOf(result);
  std::cout << answer.dump(-1, ' ', false, ordered_json::error_handler_t::replace) << '\n';
  return answer.contains("error") ? 1 : 0;
}

int signBundle(int count, char** arguments) {
  const auto given = parse(count, arguments, {"--key"});
  if (!given) return refuse("sign-bundle --key FILE APP");
  constexpr size_t kMaxKeyBytes = 256;
  const FileDescriptor file(open((*given)["--key"].c_str(), O_RDONLY | O_CLOEXEC));
  auto contents = file ? readAll(file.get(), kMaxKeyBytes) : std::nullopt;
  const auto key = contents ? SecretKey::parse(*contents) : std::nullopt;
  if (contents) sodium_memzero(contents->data(), contents->size());
  if (!key) return refuse("the key file holds no secret key");
  if (!BundleManifest::sign(given->path, *key)) return refuse("the bundle cannot be signed");
  return 0;
}

int verifyBundle(int count, char** arguments) {
  const auto given = parse(count, arguments, {"--public-key"});
  if (!given) return refuse("verify-bundle --public-key BASE64 APP");
  const auto key = PublicKey::parse((*given)["--public-key"]);
  return key && BundleManifest::isValid(given->path, *key) ? 0 : 1;
}

int canReplace(int count, char** arguments) {
  const auto given = parse(count, arguments, {});
  if (!given) return refuse("can-replace APP");
  std::cout << (UpdatePlace::canReplace(given->path) ? "true\n" : "false\n");
  return 0;
}

json releaseOf(const json& request) {
  const auto release = UpdateRelease::decode(request.at("json").get_ref<const std::string&>());
  if (!release) return {{"error", "undecodable"}};
  json record = {
      {"version", release->version}, {"build", release->build}, {"url", release->url.text()}};
  if (release->archive) record["archive"] = release->archive->text();
  if (release->signature) record["signature"] = *release->signature;
  return record;
}

}  // namespace

void addUpdateOperations(Operations& operations) { operations["updateRelease"] = releaseOf; }

std::optional<int> runUpdateCommand(std::string_view command, int count, char** arguments) {
  if (command == "update-message") return updateMessage(count, arguments);
  if (command == "stage-update") return stageUpdate(count, arguments);
  if (command == "sign-bundle") return signBundle(count, arguments);
  if (command == "verify-bundle") return verifyBundle(count, arguments);
  if (command == "can-replace") return canReplace(count, arguments);
  if (command != "swap-script") return std::nullopt;
  std::cout << UpdateSwap::script();
  return 0;
}

}  // namespace orvel::tools
