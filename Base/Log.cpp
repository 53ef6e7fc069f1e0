#include "Base/Log.h"

#include <glib.h>
#include <sodium.h>

#include <chrono>
#include <deque>
#include <mutex>

#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

constexpr size_t kMaxEntries = 4096;
constexpr size_t kMaxMessage = 2048;
constexpr size_t kMaskBytes = 8;

struct Memory {
  std::mutex mutex;
  std::deque<Log::Entry> entries;
};

Memory& memory() {
  static Memory instance;
  return instance;
}

struct Severity {
  GLogLevelFlags flags;
  const char* priority;  // of syslog
};

// GLib ends the program on its own error level, so ours maps to the one below.
Severity severity(Log::Level level) {
  switch (level) {
    case Log::Level::Debug:
      return {G_LOG_LEVEL_DEBUG, "7"};
    case Log::Level::Info:
      return {G_LOG_LEVEL_INFO, "6"};
    case Log::Level::Default:
      return {G_LOG_LEVEL_MESSAGE, "5"};
    case Log::Level::Error:
      return {G_LOG_LEVEL_WARNING, "3"};
    case Log::Level::Fault:
      return {G_LOG_LEVEL_WARNING, "2"};
  }
  return {G_LOG_LEVEL_MESSAGE, "5"};
}

}  // namespace

void Log::write(Level level, std::string message) const {
  if (message.size() > kMaxMessage) message.resize(kMaxMessage);
  message = text::repairedUTF8(message);
  const auto [flags, priority] = severity(level);
  const GLogField fields[] = {{"MESSAGE", message.c_str(), -1},
                              {"PRIORITY", priority, -1},
                              {"GLIB_DOMAIN", "Orvel", -1},
                              {"ORVEL_CATEGORY", category_, -1}};
  g_log_structured_array(flags, fields, std::size(fields));

  const Date now = std::chrono::time_point_cast<Date::duration>(std::chrono::system_clock::now());
  const std::lock_guard lock(memory().mutex);
  memory().entries.push_back({now, level, category_, std::move(message)});
  if (memory().entries.size() > kMaxEntries) memory().entries.pop_front();
}

std::vector<Log::Entry> Log::recent() {
  const std::lock_guard lock(memory().mutex);
  return {memory().entries.begin(), memory().entries.end()};
}

std::string detail::mask(std::string_view value) {
  // The key dies with the process, so that masks of two runs cannot be matched.
  static const auto key = [] {
    std::array<unsigned char, crypto_generichash_KEYBYTES> bytes;
    randombytes_buf(bytes.data(), bytes.size());
    return bytes;
  }();
  unsigned char digest[crypto_generichash_BYTES_MIN];
  crypto_generichash(digest, sizeof digest, reinterpret_cast<const unsigned char*>(value.data()),
                     value.size(), key.data(), key.size());
  char hex[2 * kMaskBytes + 1];
  sodium_bin2hex(hex, sizeof hex, digest, kMaskBytes);
  return fmt::format("<mask.hash: {}>", hex);
}

}  // namespace orvel
