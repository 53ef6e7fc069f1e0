#include "Tests/Kit/TestServer.h"

#include <fmt/format.h>
#include <gio/gio.h>
#include <signal.h>

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "Tests/Kit/TemporaryFolder.h"

namespace orvel::test {

using nlohmann::json;

TestServer::TestServer()
    : folder_(makeTemporaryFolder("server")),
      // The system's Python has the packages that setup installed.
      process_(GRef<GSubprocess>::adopt(g_subprocess_new(
          GSubprocessFlags(G_SUBPROCESS_FLAGS_STDIN_PIPE | G_SUBPROCESS_FLAGS_STDOUT_PIPE), nullptr,
          "/usr/bin/python3", ORVEL_KIT_DIR "/test_server.py", folder_.c_str(), nullptr))) {
  if (!process_) throw std::runtime_error("no Python");
  const auto output = GRef<GDataInputStream>::adopt(
      g_data_input_stream_new(g_subprocess_get_stdout_pipe(process_.get())));
  const GText line(g_data_input_stream_read_line(output.get(), nullptr, nullptr, nullptr));
  if (!line) throw std::runtime_error("the test server did not start");
  port_ = static_cast<uint16_t>(std::stoi(line.get()));
}

TestServer::~TestServer() {
  g_subprocess_send_signal(process_.get(), SIGTERM);
  g_subprocess_wait(process_.get(), nullptr, nullptr);
  std::filesystem::remove_all(folder_);
}

std::string TestServer::proxy() const { return fmt::format("http://127.0.0.1:{}", port_); }

std::string TestServer::control(const std::string& operation, const std::string& text) const {
  const auto client = GRef<GSocketClient>::adopt(g_socket_client_new());
  g_socket_client_set_enable_proxy(client.get(), FALSE);
  const auto connection = GRef<GIOStream>::adopt(G_IO_STREAM(
      g_socket_client_connect_to_host(client.get(), "127.0.0.1", port_, nullptr, nullptr)));
  const std::string request = fmt::format(
      "POST /__kit__/{} HTTP/1.1\r\nHost: kit\r\nConnection: close\r\n"
      "Content-Length: {}\r\n\r\n{}",
      operation, text.size(), text);
  if (!connection ||
      !g_output_stream_write_all(g_io_stream_get_output_stream(connection.get()), request.data(),
                                 request.size(), nullptr, nullptr, nullptr))
    throw std::runtime_error("the test server is gone");
  auto* input = g_io_stream_get_input_stream(connection.get());
  std::string answer;
  char buffer[16384];
  for (gssize count = 0;
       (count = g_input_stream_read(input, buffer, sizeof buffer, nullptr, nullptr)) > 0;)
    answer.append(buffer, static_cast<size_t>(count));
  const size_t body = answer.find("\r\n\r\n");
  return body == std::string::npos ? "" : answer.substr(body + 4);
}

void TestServer::serve(const std::string& url, const ServedPage& page) {
  // JSON has no place for bytes that are no text.
  const GText encoded(
      g_base64_encode(reinterpret_cast<const guchar*>(page.body.data()), page.body.size()));
  json entry = {{"url", url},
                {"status", page.status},
                {"headers", json::object()},
                {"bodyBase64", encoded.get()},
                {"delay", page.delay}};
  for (const auto& [name, value] : page.headers) entry["headers"][name] = value;
  if (page.truncate) entry["truncate"] = *page.truncate;
  if (page.repeat != 1) entry["repeat"] = page.repeat;
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
