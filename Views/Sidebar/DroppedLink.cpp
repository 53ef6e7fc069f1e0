#include "Views/Sidebar/DroppedLink.h"

#include <memory>
#include <string_view>

#include "Base/GRef.h"
#include "Base/GioCall.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

// No link worth opening is longer.
constexpr gsize kMaxList = 64 * 1024;

using Answer = std::function<void(std::optional<URL>)>;

// A link stands on a line of its own; lines with a hash are remarks.
std::optional<URL> firstLink(std::string_view list) {
  while (!list.empty()) {
    const size_t end = std::min(list.find('\n'), list.size());
    const auto line = text::trimmed(list.substr(0, end));
    list.remove_prefix(std::min(end + 1, list.size()));
    if (line.empty() || line.front() == '#') continue;
    auto url = URL::parse(line);
    if (url && (url->hasScheme("http") || url->hasScheme("https"))) return url;
    return std::nullopt;
  }
  return std::nullopt;
}

void readLink(GInputStream* stream, Answer answer) {
  gioCall(g_input_stream_read_bytes_async, stream, kMaxList, G_PRIORITY_DEFAULT, nullptr)
      .then(g_input_stream_read_bytes_finish,
            [answer = std::move(answer)](GBytes* bytes, const GErrorRef&) {
              gsize size = 0;
              const auto* text =
                  bytes ? static_cast<const char*>(g_bytes_get_data(bytes, &size)) : nullptr;
              answer(text ? firstLink({text, size}) : std::nullopt);
              if (bytes) g_bytes_unref(bytes);
            });
}

}  // namespace

void readLink(GdkDrop* drop, std::function<void(std::optional<URL>)> answer) {
  const char* types[] = {kLinkDragType, nullptr};
  gioCall(gdk_drop_read_async, drop, types, G_PRIORITY_DEFAULT, nullptr)
      .then([answer = std::move(answer)](GObject* source, GAsyncResult* result) {
        const char* type = nullptr;
        const auto stream = GRef<GInputStream>::adopt(
            gdk_drop_read_finish(GDK_DROP(source), result, &type, nullptr));
        if (!stream) return answer(std::nullopt);
        readLink(stream.get(), answer);
      });
}

}  // namespace orvel
