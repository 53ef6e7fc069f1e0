#include "App/StartOptions.h"

#include <fmt/format.h>
#include <gio/gio.h>

#include <filesystem>
#include <optional>
#include <string>
#include <utility>

#include "Base/GRef.h"
#include "Base/Texts.h"
#include "BrowserCore/Addresses/URLInput.h"

namespace orvel {

namespace {

constexpr int kUsageError = 2;

// The URI of the file with this name, or else the argument as it stands.
std::string addressOf(const std::string& argument) {
  std::error_code error;
  if (!std::filesystem::exists(argument, error)) return argument;
  const GText uri(
      g_filename_to_uri(std::filesystem::absolute(argument, error).c_str(), nullptr, nullptr));
  return uri ? uri.get() : argument;
}

auto refuse(const std::string& reason) {
  fmt::print(stderr, "orvel: {}\n", reason);
  return Failure(StartOptions::Ended{kUsageError});
}

}  // namespace

Result<StartOptions, StartOptions::Ended> StartOptions::parse(int count, char** arguments) {
  gboolean wantsNewTab = FALSE;
  gboolean wantsVersion = FALSE;
  gboolean isService = FALSE;
  const GOptionEntry entries[] = {{"new-tab", 0, G_OPTION_FLAG_NONE, G_OPTION_ARG_NONE,
                                   &wantsNewTab, N_("Open the command bar for a new tab"), nullptr},
                                  {"version", 0, G_OPTION_FLAG_NONE, G_OPTION_ARG_NONE,
                                   &wantsVersion, N_("Print the version"), nullptr},
                                  {"gapplication-service", 0, G_OPTION_FLAG_HIDDEN,
                                   G_OPTION_ARG_NONE, &isService, nullptr, nullptr},
                                  {}};
  const std::unique_ptr<GOptionContext, void (*)(GOptionContext*)> context(
      g_option_context_new(N_("[ADDRESS OR FILE...]")), g_option_context_free);
  g_option_context_set_summary(context.get(), N_("A web browser whose tabs live in a sidebar."));
  g_option_context_set_translation_domain(context.get(), kTextDomain);
  g_option_context_add_main_entries(context.get(), entries, kTextDomain);
  GError* rawError = nullptr;
  if (!g_option_context_parse(context.get(), &count, &arguments, &rawError))
    return refuse(GErrorRef(rawError)->message);
  if (wantsVersion) {
    fmt::print("Orvel {}\n", ORVEL_VERSION);
    return Failure(Ended{0});
  }

  StartOptions options{.wantsNewTab = wantsNewTab != FALSE, .isService = isService != FALSE};
  for (int i = 1; i < count; ++i) {
    std::string address = addressOf(arguments[i]);
    if (!URLInput::explicitURL(address))
      return refuse(filled(_("“{text}” is no address"), {{"text", arguments[i]}}));
    options.addresses.push_back(std::move(address));
  }
  return options;
}

std::optional<ExternalAddress> externalAddress(const std::string& text) {
  if (auto typed = URLInput::explicitURL(text); typed && typed->text() != text)
    return ExternalAddress{*std::move(typed), SchemeSource::Supplied};
  auto given = URL::parse(text);
  if (!given) return std::nullopt;
  return ExternalAddress{*std::move(given)};
}

}  // namespace orvel
