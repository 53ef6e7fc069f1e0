#pragma once

#include <gio/gio.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Base/GRef.h"

namespace orvel::test {

// What the test server answers at one address.
struct ServedPage {
  std::string body;
  int status = 200;
  std::map<std::string, std::string> headers;
  // Seconds before the answer.
  double delay = 0;
  // Cuts the body off after this many bytes of the announced length.
  std::optional<size_t> truncate;
  // How many times the body comes.
  uint64_t repeat = 1;
};

struct SeenRequest {
  std::string method;
  std::string url;
  std::map<std::string, std::string> headers;  // names in lower case
  std::string body;
};

// A web of its own for one test: every host name is served by a process on 127.0.0.1 that is also
// the proxy (test_server.py). The process ends with this object.
class TestServer {
 public:
  TestServer();
  ~TestServer();
  TestServer(const TestServer&) = delete;

  // The proxy's address, "http://127.0.0.1:PORT".
  std::string proxy() const;
  // The certificate that signs every https host.
  std::filesystem::path authority() const { return folder_ / "CA.pem"; }

  // An address with a query matches its own entry first, and then the one without the query.
  void serve(const std::string& url, const ServedPage& page);
  void serve(const std::string& url, const std::string& html) { serve(url, ServedPage{html}); }
  // Connections to the host's port are closed at once.
  void refuse(const std::string& host, int port);

  std::vector<SeenRequest> requests() const;
  // Requests whose address is `url`, with or without its query.
  int requestCount(const std::string& url) const;
  void clearRequests();
  // Forgets all that was served, refused and seen.
  void reset();

 private:
  std::string control(const std::string& operation, const std::string& json) const;

  std::filesystem::path folder_;
  GRef<GSubprocess> process_;
  uint16_t port_ = 0;
};

}  // namespace orvel::test
