#include "Tests/Kit/TestServer.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <glib.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "Tests/Kit/TemporaryFolder.h"

namespace orvel::test {

using nlohmann::json;

TestServer::TestServer() : folder_(makeTemporaryFolder("server")) {
  int in[2];
  int out[2];
  if (pipe(in) != 0 || pipe(out) != 0) throw std::runtime_error("pipe");
  process_ = fork();
  if (process_ == 0) {
    dup2(in[0], STDIN_FILENO);
    dup2(out[1], STDOUT_FILENO);
    for (const int end : {in[0], in[1], out[0], out[1]}) close(end);
    // The system's Python has the packages that setup installed.
    execl("/usr/bin/python3", "python3", ORVEL_KIT_DIR "/test_server.py", folder_.c_str(),
          static_cast<char*>(nullptr));
    _exit(127);
  }
  close(in[0]);
  close(out[1]);
  input_ = in[1];
  std::string line;
  for (char c = 0; read(out[0], &c, 1) == 1 && c != '\n';) line += c;
  close(out[0]);
  if (line.empty()) throw std::runtime_error("the test server did not start");
  port_ = std::stoi(line);
}

TestServer::~TestServer() {
  close(input_);
  kill(process_, SIGTERM);
  waitpid(process_, nullptr, 0);
  std::filesystem::remove_all(folder_);
}

std::string TestServer::proxy() const { return fmt::format("http://127.0.0.1:{}", port_); }

std::string TestServer::control(const std::string& operation, const std::string& text) const {
  const int connection = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<uint16_t>(port_));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
    throw std::runtime_error("the test server is gone");
  const std::string request = fmt::format(
      "POST /__kit__/{} HTTP/1.1\r\nHost: kit\r\nConnection: close\r\n"
      "Content-Length: {}\r\n\r\n{}",
      operation, text.size(), text);
  for (size_t sent = 0; sent < request.size();) {
    const ssize_t count = write(connection, request.data() + sent, request.size() - sent);
    if (count <= 0) break;
    sent += static_cast<size_t>(count);
  }
  std::string answer;
  char buffer[16384];
  for (ssize_t count = 0; (count = read(connection, buffer, sizeof buffer)) > 0;)
    answer.append(buffer, static_cast<size_t>(count));
  close(connection);
  const size_t body = answer.find("\r\n\r\n");
  return body == std::string::npos ? "" : answer.substr(body + 4);
}

void TestServer::serve(const std::string& url, const ServedPage& page) {
  // JSON has no place for bytes that are no text.
  const std::unique_ptr<char, decltype(&g_free)> encoded(
      g_base64_encode(reinterpret_cast<const guchar*>(page.body.data()), page.body.size()), g_free);
  json entry = {{"url", url},
                {"status", page.status},
                {"headers", json::object()},
                {"bodyBase64", encoded.get()},
                {"delay", page.delay}};
  for (const auto& [name, value] : page.headers) entry["headers"][name] = value;
  if (page.truncate) entry["truncate"] = *page.truncate;
  control("serve", entry.dump());
}

void TestServer::refuse(const std::string& host, int port) {
  control("refuse", json{{"host", host}, {"port", port}}.dump());
}

std::vector<SeenRequest> TestServer::requests() const {
  std::vector<SeenRequest> requests;
  for (const json& entry : json::parse(control("requests", "null"))) {
    SeenRequest request{entry["method"], entry["url"], {}, entry["body"]};
    for (const auto& [name, value] : entry["headers"].items()) request.headers[name] = value;
    requests.push_back(std::move(request));
  }
  return requests;
}

int TestServer::requestCount(const std::string& url) const {
  int count = 0;
  for (const SeenRequest& request : requests())
    count += request.url == url || request.url.substr(0, request.url.find('?')) == url;
  return count;
}

void TestServer::clearRequests() { control("clear", "null"); }

void TestServer::reset() { control("reset", "null"); }

}  // namespace orvel::test
