#include "Models/Tab/PagePermissions.h"

#include <algorithm>
#include <utility>

#include "Base/Texts.h"
#include "Models/Settings/Settings.h"
#include "Models/Tab/BrowserTab.h"

namespace orvel {

namespace {

using enum PageDevice;
using Devices = std::vector<PageDevice>;

std::string question(const std::string& host, const Devices& devices) {
  const char* words = devices.size() > 1 ? _("Allow “{host}” to use your camera and microphone?")
                      : devices[0] == Camera     ? _("Allow “{host}” to use your camera?")
                      : devices[0] == Microphone ? _("Allow “{host}” to use your microphone?")
                                                 : _("Allow “{host}” to use your location?");
  return filled(words, {{"host", host}});
}

}  // namespace

std::string_view keyOf(PageDevice device) {
  switch (device) {
    case Camera:
      return "camera";
    case Microphone:
      return "microphone";
    case Location:
      return "location";
  }
  return {};
}

std::optional<PermissionDecision> PagePermissions::remembered(const std::string& host,
                                                              const Devices& devices) const {
  const auto& all = tab_.host()->settings()->sitePermissions.peek();
  const auto site = all.find(host);
  if (site == all.end()) return std::nullopt;
  size_t allowed = 0;
  for (const PageDevice device : devices) {
    const auto entry = site->second.find(std::string(keyOf(device)));
    if (entry == site->second.end()) continue;
    if (!entry->second) return PermissionDecision::Deny;
    ++allowed;
  }
  return allowed == devices.size() ? std::optional(PermissionDecision::Grant) : std::nullopt;
}

void PagePermissions::remember(const std::string& host, const Devices& devices, bool isAllowed) {
  tab_.host()->settings()->sitePermissions.update([&](Settings::SitePermissions& all) {
    for (const PageDevice device : devices) all[host][std::string(keyOf(device))] = isAllowed;
  });
}

void PagePermissions::decidePermission(WebView& view, const std::string& host, Devices devices,
                                       std::function<void(PermissionDecision)> answer) {
  using enum PermissionDecision;
  if (!tab_.host()->settings()) return answer(Prompt);
  const auto told = [this, weak = tab_.weak_from_this(), devices,
                     answer = std::move(answer)](PermissionDecision decision) {
    const bool usesLocation = std::ranges::find(devices, Location) != devices.end();
    if (const auto tab = weak.lock(); tab && decision == Grant && usesLocation) {
      auto now = inUse.peek();
      now.insert(Location);
      inUse = std::move(now);
    }
    answer(decision);
  };
  const bool isPrivate = tab_.profile->isPrivate;
  if (!isPrivate)
    if (const auto decision = remembered(host, devices)) return told(*decision);
  if (!view.isInWindow() || refusals_ >= kMaxRefusals) return told(Deny);

  PageQuestion asked{
      .voice = PageQuestion::Voice::Program,
      .alert = {.messageText = question(host, devices), .buttons = {_("Allow"), _("Don’t Allow")}},
      .leavesKeyboard = true};
  for (const PageDevice device : devices) asked.symbols.emplace_back(keyOf(device));
  if (!isPrivate) asked.alert.suppression = {.title = _("Remember for this site"), .isOn = true};
  asked_.push_back(
      tab_.questions.ask(std::move(asked), [this, weak = tab_.weak_from_this(), host, devices,
                                            isPrivate, told](const AlertAnswer& given) {
        const auto tab = weak.lock();
        const bool isAllowed = given.isFirstButton();
        const bool isRemembered = !isPrivate && given.button && given.isSuppressionOn;
        if (tab && given.button && !isAllowed) ++refusals_;
        if (tab && isRemembered && tab->host()->settings()) remember(host, devices, isAllowed);
        told(isAllowed ? Grant : Deny);
      }));
}

void PagePermissions::follow(const WebView& view) {
  auto now = inUse.peek();
  const auto set = [&](PageDevice device, CaptureState state) {
    if (state == CaptureState::None)
      now.erase(device);
    else
      now.insert(device);
  };
  set(Camera, view.cameraCaptureState());
  set(Microphone, view.microphoneCaptureState());
  inUse = std::move(now);
}

void PagePermissions::pageDidChange() {
  for (const uint64_t question : std::exchange(asked_, {})) tab_.questions.withdraw(question);
  refusals_ = 0;
  inUse = std::set<PageDevice>();
}

void PagePermissions::stop() {
  const auto view = tab_.liveWebView();
  if (!view) return;
  const bool hadLocation = inUse.peek().contains(Location);
  view->endCapture();
  inUse = std::set<PageDevice>();
  if (!hadLocation) return;
  const auto host = tab_.url.peek() ? tab_.url.peek()->host() : std::nullopt;
  if (auto* settings = tab_.host()->settings(); settings && host && !tab_.profile->isPrivate)
    settings->sitePermissions.update([&](Settings::SitePermissions& all) {
      if (const auto site = all.find(std::string(*host)); site != all.end())
        site->second.erase(std::string(keyOf(Location)));
    });
  tab_.reload();
}

}  // namespace orvel
