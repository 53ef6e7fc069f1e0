#include "Support/Network/HTTPSession.h"

#include <libsoup/soup.h>

#include <utility>

#include "Base/GRef.h"
#include "Base/GioCall.h"

namespace orvel {

namespace {

constexpr gsize kChunk = 64 << 10;

// One request on its way, owned by the calls that have still to return.
class Fetch : public std::enable_shared_from_this<Fetch> {
 public:
  Fetch(GRef<SoupMessage> message, GCancellable* ended, const HTTPLimits& limits,
        std::function<void(HTTPResult)> answer)
      : message_(std::move(message)),
        cancellable_(GRef<GCancellable>::adopt(g_cancellable_new())),
        ended_(GRef<GCancellable>::retain(ended)),
        mostBytes_(limits.mostBytes),
        answer_(std::move(answer)) {
    endedConnection_ =
        g_cancellable_connect(ended, G_CALLBACK(+[](GCancellable*, gpointer own) {
                                g_cancellable_cancel(static_cast<GCancellable*>(own));
                              }),
                              cancellable_.get(), nullptr);
    timer_ = g_timeout_add(
        static_cast<guint>(limits.timeout / 1ms),
        [](gpointer self) -> gboolean {
          static_cast<Fetch*>(self)->timeOut();
          return G_SOURCE_REMOVE;
        },
        this);
  }
  ~Fetch() {
    if (timer_) g_source_remove(timer_);
    g_cancellable_disconnect(ended_.get(), endedConnection_);
  }
  Fetch(const Fetch&) = delete;

  void send(SoupSession* session) {
    gioCall(soup_session_send_async, session, message_.get(), G_PRIORITY_DEFAULT,
            cancellable_.get())
        .then(soup_session_send_finish,
              [self = shared_from_this()](GInputStream* stream, const GErrorRef& error) {
                self->answered(stream, error);
              });
  }

 private:
  void answered(GInputStream* stream, const GErrorRef& error) {
    stream_ = GRef<GInputStream>::adopt(stream);
    if (!stream_) return fail(error.get());
    const goffset announced =
        soup_message_headers_get_content_length(soup_message_get_response_headers(message_.get()));
    if (announced > 0 && static_cast<uint64_t>(announced) > mostBytes_)
      return answer_(Failure(HTTPFailure::TooLarge));
    readOn();
  }

  void readOn() {
    gioCall(g_input_stream_read_bytes_async, stream_.get(), kChunk, G_PRIORITY_DEFAULT,
            cancellable_.get())
        .then(g_input_stream_read_bytes_finish,
              [self = shared_from_this()](GBytes* bytes, const GErrorRef& error) {
                self->read(bytes, error);
              });
  }

  void read(GBytes* bytes, const GErrorRef& error) {
    if (!bytes) return fail(error.get());
    gsize size = 0;
    const void* chunk = g_bytes_get_data(bytes, &size);
    if (size > 0) body_.append(static_cast<const char*>(chunk), size);
    g_bytes_unref(bytes);
    if (body_.size() > mostBytes_) return answer_(Failure(HTTPFailure::TooLarge));
    if (size > 0) return readOn();
    succeed();
  }

  void succeed() {
    const GText url(g_uri_to_string(soup_message_get_uri(message_.get())));
    answer_(HTTPAnswer{.status = static_cast<int>(soup_message_get_status(message_.get())),
                       .body = std::move(body_),
                       .url = url.get()});
  }

  void timeOut() {
    timer_ = 0;
    isTimedOut_ = true;
    g_cancellable_cancel(cancellable_.get());
  }

  void fail(const GError* error) { answer_(Failure(failure(error))); }

  HTTPFailure failure(const GError* error) const {
    if (isTimedOut_) return HTTPFailure::TimedOut;
    if (g_cancellable_is_cancelled(ended_.get())) return HTTPFailure::Cancelled;
    if (g_error_matches(error, SOUP_SESSION_ERROR, SOUP_SESSION_ERROR_TOO_MANY_REDIRECTS))
      return HTTPFailure::TooManyRedirects;
    return stream_ ? HTTPFailure::CutOff : HTTPFailure::Unreachable;
  }

  GRef<SoupMessage> message_;
  // This request's own, so that its time limit ends nothing else.
  GRef<GCancellable> cancellable_;
  GRef<GCancellable> ended_;
  gulong endedConnection_ = 0;
  guint timer_ = 0;
  bool isTimedOut_ = false;
  GRef<GInputStream> stream_;
  std::string body_;
  uint64_t mostBytes_;
  std::function<void(HTTPResult)> answer_;
};

class SoupHTTPSession final : public HTTPSession {
 public:
  SoupHTTPSession()
      : session_(GRef<SoupSession>::adopt(soup_session_new())),
        ended_(GRef<GCancellable>::adopt(g_cancellable_new())) {
    soup_session_set_user_agent(session_.get(), "Orvel");
  }
  ~SoupHTTPSession() override { g_cancellable_cancel(ended_.get()); }

  void fetch(const URL& url, const HTTPLimits& limits,
             std::function<void(HTTPResult)> answer) override {
    const bool isWeb = (url.hasScheme("http") || url.hasScheme("https")) && url.host();
    auto message = GRef<SoupMessage>::adopt(
        isWeb ? soup_message_new(SOUP_METHOD_GET, url.text().c_str()) : nullptr);
    if (!message) return refuse(std::move(answer));
    std::make_shared<Fetch>(std::move(message), ended_.get(), limits, std::move(answer))
        ->send(session_.get());
  }

 private:
  static void refuse(std::function<void(HTTPResult)> answer) {
    g_idle_add_once(
        [](gpointer data) {
          const std::unique_ptr<std::function<void(HTTPResult)>> give(
              static_cast<std::function<void(HTTPResult)>*>(data));
          (*give)(Failure(HTTPFailure::Unreachable));
        },
        new std::function(std::move(answer)));
  }

  GRef<SoupSession> session_;
  GRef<GCancellable> ended_;
};

}  // namespace

std::unique_ptr<HTTPSession> HTTPSession::ephemeral() {
  return std::make_unique<SoupHTTPSession>();
}

Future<HTTPResult> fetch(HTTPSession& session, const URL& url, const HTTPLimits& limits) {
  auto [future, resolve] = makeFuture<HTTPResult>();
  session.fetch(url, limits, std::move(resolve));
  return std::move(future);
}

}  // namespace orvel
