#include "Support/Network/HTTPSession.h"

#include <libsoup/soup.h>

#include <utility>

#include "Base/GRef.h"

namespace orvel {

namespace {

constexpr gsize kChunk = 64 << 10;

// One request on its way, owned by the callbacks that are still to come.
class Fetch {
 public:
  Fetch(SoupSession* session, GRef<SoupMessage> message, GCancellable* ended,
        const HTTPLimits& limits, std::function<void(HTTPResult)> answer)
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
    soup_session_send_async(session, message_.get(), G_PRIORITY_DEFAULT, cancellable_.get(),
                            &Fetch::answered, this);
  }

 private:
  ~Fetch() {
    if (timer_) g_source_remove(timer_);
    g_cancellable_disconnect(ended_.get(), endedConnection_);
  }

  static void answered(GObject* session, GAsyncResult* result, gpointer data) {
    auto* self = static_cast<Fetch*>(data);
    GError* error = nullptr;
    self->stream_ =
        GRef<GInputStream>::adopt(soup_session_send_finish(SOUP_SESSION(session), result, &error));
    if (!self->stream_) return self->fail(GErrorRef(error).get());
    const goffset announced = soup_message_headers_get_content_length(
        soup_message_get_response_headers(self->message_.get()));
    if (announced > 0 && static_cast<uint64_t>(announced) > self->mostBytes_)
      return self->finish(Failure(HTTPFailure::TooLarge));
    self->readOn();
  }

  void readOn() {
    g_input_stream_read_bytes_async(stream_.get(), kChunk, G_PRIORITY_DEFAULT, cancellable_.get(),
                                    &Fetch::read, this);
  }

  static void read(GObject* stream, GAsyncResult* result, gpointer data) {
    auto* self = static_cast<Fetch*>(data);
    GError* error = nullptr;
    GBytes* bytes = g_input_stream_read_bytes_finish(G_INPUT_STREAM(stream), result, &error);
    if (!bytes) return self->fail(GErrorRef(error).get());
    gsize size = 0;
    const void* chunk = g_bytes_get_data(bytes, &size);
    if (size > 0) self->body_.append(static_cast<const char*>(chunk), size);
    g_bytes_unref(bytes);
    if (self->body_.size() > self->mostBytes_) return self->finish(Failure(HTTPFailure::TooLarge));
    if (size > 0) return self->readOn();
    self->succeed();
  }

  void succeed() {
    const GText url(g_uri_to_string(soup_message_get_uri(message_.get())));
    finish(HTTPAnswer{.status = static_cast<int>(soup_message_get_status(message_.get())),
                      .body = std::move(body_),
                      .url = url.get()});
  }

  void timeOut() {
    timer_ = 0;
    isTimedOut_ = true;
    g_cancellable_cancel(cancellable_.get());
  }

  void fail(const GError* error) { finish(Failure(failure(error))); }

  HTTPFailure failure(const GError* error) const {
    if (isTimedOut_) return HTTPFailure::TimedOut;
    if (g_cancellable_is_cancelled(ended_.get())) return HTTPFailure::Cancelled;
    if (g_error_matches(error, SOUP_SESSION_ERROR, SOUP_SESSION_ERROR_TOO_MANY_REDIRECTS))
      return HTTPFailure::TooManyRedirects;
    return stream_ ? HTTPFailure::CutOff : HTTPFailure::Unreachable;
  }

  void finish(HTTPResult result) {
    const auto answer = std::move(answer_);
    delete this;
    answer(std::move(result));
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
    // Deletes itself with its answer.
    new Fetch(session_.get(), std::move(message), ended_.get(), limits, std::move(answer));
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
