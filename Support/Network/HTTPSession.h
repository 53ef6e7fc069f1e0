#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "Base/Scheduler.h"
#include "BrowserCore/Addresses/URL.h"
#include "BrowserCore/Result.h"

namespace orvel {

// What may go wrong on the way to an answer.
enum class HTTPFailure {
  Unreachable,  // no connection, no trusted certificate, no HTTP, or an address that isn't http(s)
  TimedOut,
  TooLarge,
  CutOff,            // the connection ended before the body did
  TooManyRedirects,  // more than 20
  Cancelled,         // the session ended first
};

struct HTTPAnswer {
  int status = 0;
  std::string body;
  // Where redirects led.
  std::string url;

  bool isOK() const { return status == 200; }
};

// An answer, whatever its status, or why there is none.
using HTTPResult = Result<HTTPAnswer, HTTPFailure>;

struct HTTPLimits {
  // From the call to the last byte, redirects included.
  Duration timeout = 60s;
  // The most bytes of the body, after it was unpacked.
  uint64_t mostBytes = 16u << 20;
};

// Fetches what the program itself needs: without cookies, a cache or anything else that it would
// share with pages or with another session. Belongs to the main thread.
class HTTPSession {
 public:
  // Ends what is under way: each request still gets its one answer.
  virtual ~HTTPSession() = default;

  // Gets `url`, following redirects. `answer` is called once, on a later turn of the main thread.
  virtual void fetch(const URL& url, const HTTPLimits& limits,
                     std::function<void(HTTPResult)> answer) = 0;

  // A session on the machine's network and its proxy settings.
  static std::unique_ptr<HTTPSession> ephemeral();
};

using MakeHTTPSession = std::function<std::unique_ptr<HTTPSession>()>;

// For tasks: `auto answer = fetch(*session, url, limits); const auto a = co_await
// std::move(answer);`.
[[nodiscard]] Future<HTTPResult> fetch(HTTPSession& session, const URL& url,
                                       const HTTPLimits& limits);

}  // namespace orvel
