#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Base/Time.h"
#include "BrowserCore/Addresses/URL.h"

namespace orvel {

// A frame of a page. Two values with the same `id` are the same frame as long as it lives.
struct FrameInfo {
  uint64_t id = 0;
  bool isMainFrame = true;
  // The host of the frame's security origin; empty for opaque origins, files and blank pages.
  std::string securityOriginHost;

  friend bool operator==(const FrameInfo&, const FrameInfo&) = default;
};

// Who chose an address's scheme. An https that the program supplied is a try: where a view tries
// https first, a host that does not serve it is asked over http, like one that was upgraded.
enum class SchemeSource { Given, Supplied };

struct URLRequest {
  URL url;
  // Upper case, as HTTP writes it.
  std::string method = "GET";
  std::vector<std::pair<std::string, std::string>> headers;
  // What a page sends along to a scheme of the program's own. The program's own loads have none.
  std::string body;
  // How long the server may take to answer, after each redirect anew. A later answer counts as a
  // failure.
  Duration timeout = 60s;
  SchemeSource schemeSource = SchemeSource::Given;
};

enum class NavigationType {
  Other = -1,  // scripts, their clicks too, redirects, the program
  LinkActivated = 0,
  FormSubmitted = 1,
  BackForward = 2,
  Reload = 3,
  FormResubmitted = 4,
};

enum class NavigationPolicy { Cancel = 0, Allow = 1, Download = 2 };

// The keys held during a click.
struct ModifierFlags {
  bool shift = false;
  bool control = false;
  bool alt = false;

  friend bool operator==(const ModifierFlags&, const ModifierFlags&) = default;
};

enum class MouseButton { None = -1, Left = 0, Right = 1, Middle = 2 };

// A navigation that waits for the program's decision.
struct NavigationAction {
  // The page asked for a download (an anchor with a `download` attribute).
  bool shouldPerformDownload = false;
  // Absent when the engine knows no address.
  std::optional<URLRequest> request;
  NavigationType navigationType = NavigationType::Other;
  // The frame that asked; absent when the program did, or when the engine cannot tell.
  std::optional<FrameInfo> sourceFrame;
  // The frame to be navigated; absent for a request for a new window. Where the engine could not
  // tell a sub-frame from the main frame in time this is the cautious answer, a sub-frame, and the
  // main frame's own question follows when it is known, before the page commits. Addresses that the
  // engine cannot load are asked about only when it is known.
  std::optional<FrameInfo> targetFrame;
  ModifierFlags modifierFlags;
  MouseButton buttonNumber = MouseButton::None;
  bool hasUserGesture = false;
  // For a new window: the number of the latest press of a key or a button in the view.
  uint64_t input = 0;
};

struct NavigationResponse {
  URL url;
  bool isForMainFrame = true;
  // The HTTP status; 0 when the response is not HTTP.
  int status = 0;
  std::string mimeType;
  // The engine can show this MIME type in a page.
  bool canShowMIMEType = true;
  // The response's "Content-Disposition" header; absent when it has none or is not HTTP.
  std::optional<std::string> contentDisposition;
};

using PolicyHandler = std::function<void(NavigationPolicy)>;

// Why a load failed.
struct LoadError {
  enum class Kind {
    Cancelled,          // a newer load, the user or the program stopped it
    PolicyInterrupted,  // a decision sent it elsewhere: a download, a cancelled navigation
    NotConnected,
    DNSLookupFailed,
    ConnectionLost,
    CannotConnect,
    CannotFindHost,
    TimedOut,
    BadCertificate,
    DiskFull,  // a download that the disk has no room for
    Other,
  };
  Kind kind = Kind::Other;
  // The engine's own error domain and number, for the log.
  std::string domain;
  int code = 0;
  // One sentence for the user, in the user's language where the engine has it.
  std::string localizedDescription;
  // The address that failed; absent when the engine does not say.
  std::optional<URL> failingURL;
};

}  // namespace orvel
