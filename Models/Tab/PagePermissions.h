#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Base/Published.h"
#include "Engine/Delegates.h"

namespace orvel {

class BrowserTab;

// What a page may ask to use of the machine.
enum class PageDevice { Camera, Microphone, Location };

// The device's name in the stored settings: "camera", "microphone", "location".
[[nodiscard]] std::string_view keyOf(PageDevice device);

// Whether the page of a tab gets the devices that it asks for, and which of them it has now.
class PagePermissions {
 public:
  static constexpr int kMaxRefusals = 3;

  explicit PagePermissions(BrowserTab& tab) : tab_(tab) {}

  // Location counts as in use from the grant on until the page is left: the engine does not tell.
  Published<std::set<PageDevice>, PagePermissions> inUse;

  // Grants what is allowed on the host, denies what is blocked there, and asks in between, about
  // all of `devices` at once. What a private tab asks is always put to the user and never
  // remembered. Without a window the answer is no; without a store, that there is none. A page that
  // goes on asking after `kMaxRefusals` refusals is not heard.
  void decidePermission(WebView& view, const std::string& host, std::vector<PageDevice> devices,
                        std::function<void(PermissionDecision)> answer);
  // What the engine says of camera and microphone has changed.
  void follow(const WebView& view);
  // Another page is there, or none.
  void pageDidChange();
  // Takes every device away from the page. One that has the location is loaded again, as nothing
  // else ends its watching; it is not granted anew by itself.
  void stop();

 private:
  std::optional<PermissionDecision> remembered(const std::string& host,
                                               const std::vector<PageDevice>& devices) const;
  void remember(const std::string& host, const std::vector<PageDevice>& devices, bool isAllowed);

  BrowserTab& tab_;
  // The questions about the present page.
  std::vector<uint64_t> asked_;
  int refusals_ = 0;
};

}  // namespace orvel
