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
  // Null file: the body goes into the answer.
  Fetch(SoupSession* session, GRef<SoupMessage> message, GRef<GOutputStream> file,
        GCancellable* ended, const HTTPLimits& limits, std::function<void(HTTPAnswer)> answer)
      : message_(std::move(message)),
        file_(std::move(file)),
        cancellable_(GRef<GCancellable>::adopt(g_cancellable_new())),
        ended_(GRef<GCancellable>::retain(ended)),
        mostBytes_(limits.mostBytes),
        timeout_(static_cast<guint>(limits.timeout / 1ms)),
        answer_(std::move(answer)) {
    endedConnection_ =
        g_cancellable_connect(ended, G_CALLBACK(+[](GCancellable*, gpointer own) {
                                g_cancellable_cancel(static_cast<GCancellable*>(own));
                              }),
                              cancellable_.get(), nullptr);
    startTimer();
    soup_session_send_async(session, message_.get(), G_PRIORITY_DEFAULT, cancellable_.get(),
                            &Fetch::answered, this);
  }

 private:
  ~Fetch() {
    if (timer_) g_source_remove(timer_);
    g_cancellable_disconnect(ended_.get(), endedConnection_);
  }

  void startTimer() {
    if (timer_) g_source_remove(timer_);
    timer_ = g_timeout_add(
        timeout_,
        [](gpointer self) -> gboolean {
          static_cast<Fetch*>(self)->timeOut();
          return G_SOURCE_REMOVE;
        },
        this);
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
      return self->finish({.failure = HTTPFailure::TooLarge});
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
    self->size_ += size;
    if (self->size_ > self->mostBytes_) return self->finish({.failure = HTTPFailure::TooLarge});
    if (self->file_) return self->writeOn();
    if (size > 0) return self->readOn();
    self->succeed();
  }

  // What has come goes into the file; when nothing has, that was all.
  void writeOn() {
    startTimer();
    if (body_.empty())
      g_output_stream_close_async(file_.get(), G_PRIORITY_DEFAULT, cancellable_.get(),
                                  &Fetch::closed, this);
    else
      g_output_stream_write_all_async(file_.get(), body_.data(), body_.size(), G_PRIORITY_DEFAULT,
                                      cancellable_.get(), &Fetch::written, this);
  }

  static void written(GObject* file, GAsyncResult* result, gpointer data) {
    auto* self = static_cast<Fetch*>(data);
    if (!g_output_stream_write_all_finish(G_OUTPUT_STREAM(file), result, nullptr, nullptr))
      return self->failToWrite();
    self->body_.clear();
    self->readOn();
  }

  static void closed(GObject* file, GAsyncResult* result, gpointer data) {
    auto* self = static_cast<Fetch*>(data);
    if (!g_output_stream_close_finish(G_OUTPUT_STREAM(file), result, nullptr))
      return self->failToWrite();
    self->succeed();
  }

  void failToWrite() {
    const bool wasEnded = isTimedOut_ || g_cancellable_is_cancelled(ended_.get());
    finish({.failure = wasEnded ? failure(nullptr) : HTTPFailure::Unwritable});
  }

  void succeed() {
    const GText url(g_uri_to_string(soup_message_get_uri(message_.get())));
    finish({.status = static_cast<int>(soup_message_get_status(message_.get())),
            .body = std::move(body_),
            .url = url.get()});
  }

  void timeOut() {
    timer_ = 0;
    isTimedOut_ = true;
    g_cancellable_cancel(cancellable_.get());
  }

  void fail(const GError* error) { finish({.failure = failure(error)}); }

  HTTPFailure failure(const GError* error) const {
    if (isTimedOut_) return HTTPFailure::TimedOut;
    if (g_cancellable_is_cancelled(ended_.get())) return HTTPFailure::Cancelled;
    if (g_error_matches(error, SOUP_SESSION_ERROR, SOUP_SESSION_ERROR_TOO_MANY_REDIRECTS))
      return HTTPFailure::TooManyRedirects;
    return stream_ ? HTTPFailure::CutOff : HTTPFailure::Unreachable;
  }

  void finish(HTTPAnswer result) {
    const auto answer = std::move(answer_);
    delete this;
    answer(std::move(result));
  }

  GRef<SoupMessage> message_;
  GRef<GOutputStream> file_;
  // This request's own, so that its time limit ends nothing else.
  GRef<GCancellable> cancellable_;
  GRef<GCancellable> ended_;
  gulong endedConnection_ = 0;
  guint timer_ = 0;
  bool isTimedOut_ = false;
  GRef<GInputStream> stream_;
  std::string body_;  // all of it, or what is still to be written
  uint64_t size_ = 0;
  uint64_t mostBytes_;
  guint timeout_;  // milliseconds
  std::function<void(HTTPAnswer)> answer_;
};

// A download whose file is being made.
struct Download {
  static void begin(GObject* path, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<Download> own(static_cast<Download*>(data));
    auto file = GRef<GOutputStream>::adopt(
        G_OUTPUT_STREAM(g_file_create_finish(G_FILE(path), result, nullptr)));
    if (g_cancellable_is_cancelled(own->ended.get()))
      own->answer({.failure = HTTPFailure::Cancelled});
    else if (!file)
      own->answer({.failure = HTTPFailure::Unwritable});
    else
      new Fetch(own->session.get(), std::move(own->message), std::move(file), own->ended.get(),
                own->limits, std::move(own->answer));
  }

  GRef<SoupSession> session;
  GRef<SoupMessage> message;
  GRef<GCancellable> ended;
  HTTPLimits limits;
  std::function<void(HTTPAnswer)> answer;
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
             std::function<void(HTTPAnswer)> answer) override {
    auto message = messageFor(url);
    if (!message) return refuse(std::move(answer));
    // Deletes itself with its answer.
    new Fetch(session_.get(), std::move(message), {}, ended_.get(), limits, std::move(answer));
  }

  void download(const URL& url, const std::filesystem::path& file, const HTTPLimits& limits,
                std::function<void(HTTPAnswer)> answer) override {
    auto message = messageFor(url);
    if (!message) return refuse(std::move(answer));
    auto* begun = new Download{session_, std::move(message), ended_, limits, std::move(answer)};
    const auto path = GRef<GFile>::adopt(g_file_new_for_path(file.c_str()));
    g_file_create_async(path.get(), G_FILE_CREATE_PRIVATE, G_PRIORITY_DEFAULT, ended_.get(),
                        &Download::begin, begun);
  }

 private:
  // Null for an address that is none of the web's.
  static GRef<SoupMessage> messageFor(const URL& url) {
    const bool isWeb = (url.hasScheme("http") || url.hasScheme("https")) && url.host();
    return GRef<SoupMessage>::adopt(isWeb ? soup_message_new(SOUP_METHOD_GET, url.text().c_str())
                                          : nullptr);
  }

  static void refuse(std::function<void(HTTPAnswer)> answer) {
    g_idle_add_once(
        [](gpointer data) {
          const std::unique_ptr<std::function<void(HTTPAnswer)>> give(
              static_cast<std::function<void(HTTPAnswer)>*>(data));
          (*give)({.failure = HTTPFailure::Unreachable});
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

Future<HTTPAnswer> fetch(HTTPSession& session, const URL& url, const HTTPLimits& limits) {
  auto [future, resolve] = makeFuture<HTTPAnswer>();
  session.fetch(url, limits, std::move(resolve));
  return std::move(future);
}

Future<HTTPAnswer> download(HTTPSession& session, const URL& url, const std::filesystem::path& file,
                            const HTTPLimits& limits) {
  auto [future, resolve] = makeFuture<HTTPAnswer>();
  session.download(url, file, limits, std::move(resolve));
  return std::move(future);
}

}  // namespace orvel
