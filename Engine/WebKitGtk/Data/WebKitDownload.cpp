#include "Engine/WebKitGtk/Data/WebKitDownload.h"

#include <cerrno>
#include <cstring>

#include "Engine/WebKitGtk/Policy/LoadErrors.h"
#include "Engine/WebKitGtk/Policy/ReportedURL.h"

namespace orvel {

namespace {

constexpr const char* kFollowed = "orvel-followed";

}  // namespace

std::shared_ptr<WebKitDownloadAdapter> WebKitDownloadAdapter::follow(
    WebKitDownload* download, WebKitNetworkSession* session) {
  const bool isEphemeral = webkit_network_session_is_ephemeral(session);
  std::shared_ptr<WebKitDownloadAdapter> adapter(new WebKitDownloadAdapter(download, isEphemeral));
  adapter->self_ = adapter;
  return adapter;
}

bool WebKitDownloadAdapter::isFollowed(WebKitDownload* download) {
  return g_object_get_data(G_OBJECT(download), kFollowed) != nullptr;
}

WebKitDownloadAdapter::WebKitDownloadAdapter(WebKitDownload* download, bool isEphemeral)
    : download_(GRef<WebKitDownload>::retain(download)), isEphemeral_(isEphemeral) {
  g_object_set_data(G_OBJECT(download), kFollowed, this);
  g_signal_connect(download, "decide-destination", G_CALLBACK(&decideDestination), this);
  g_signal_connect(download, "notify::estimated-progress", G_CALLBACK(&progressed), this);
  g_signal_connect(download, "failed", G_CALLBACK(&failed), this);
  g_signal_connect(download, "finished", G_CALLBACK(&finished), this);
}

WebKitDownloadAdapter::~WebKitDownloadAdapter() {
  g_signal_handlers_disconnect_by_data(download_.get(), this);
}

std::optional<URL> WebKitDownloadAdapter::originalURL() const {
  return reportedURL(webkit_uri_request_get_uri(webkit_download_get_request(download_.get())));
}

std::optional<uint64_t> WebKitDownloadAdapter::expectedBytes() const {
  auto* response = webkit_download_get_response(download_.get());
  const uint64_t length = response ? webkit_uri_response_get_content_length(response) : 0;
  return length > 0 ? std::optional(length) : std::nullopt;
}

double WebKitDownloadAdapter::fractionCompleted() const {
  return webkit_download_get_estimated_progress(download_.get());
}

Observation WebKitDownloadAdapter::observeProgress(std::function<void()> changed) {
  const uint64_t id = ++lastObserver_;
  observers_[id] = std::move(changed);
  return Observation([weak = weak_from_this(), id] {
    if (const auto self = weak.lock()) self->observers_.erase(id);
  });
}

void WebKitDownloadAdapter::cancel() { webkit_download_cancel(download_.get()); }

void WebKitDownloadAdapter::setDelegate(std::weak_ptr<DownloadDelegate> delegate) {
  delegate_ = std::move(delegate);
}

gboolean WebKitDownloadAdapter::decideDestination(WebKitDownload*, const char* suggested,
                                                  gpointer data) {
  const auto self = static_cast<WebKitDownloadAdapter*>(data)->shared_from_this();
  const auto delegate = self->delegate_.lock();
  if (!delegate) {
    self->cancel();
    return TRUE;
  }
  delegate->decideDestination(
      self, suggested ? suggested : "", [self](const std::optional<std::filesystem::path>& path) {
        if (!path) return self->cancel();
        webkit_download_set_destination(self->download_.get(), path->c_str());
      });
  return TRUE;
}

void WebKitDownloadAdapter::progressed(WebKitDownload*, GParamSpec*, gpointer data) {
  for (const auto& [id, changed] : std::map(static_cast<WebKitDownloadAdapter*>(data)->observers_))
    changed();
}

void WebKitDownloadAdapter::failed(WebKitDownload*, GError* error, gpointer data) {
  auto* self = static_cast<WebKitDownloadAdapter*>(data);
  const char* uri = webkit_uri_request_get_uri(webkit_download_get_request(self->download_.get()));
  self->failure_ = loadError(*error, uri);
  if (error->domain != WEBKIT_DOWNLOAD_ERROR) return;
  if (error->code == WEBKIT_DOWNLOAD_ERROR_CANCELLED_BY_USER)
    self->failure_->kind = LoadError::Kind::Cancelled;
  else if (std::strstr(error->message, g_strerror(ENOSPC)))
    // The engine keeps the disk's own number to itself.
    self->failure_->kind = LoadError::Kind::DiskFull;
}

// Comes last after a failure too.
void WebKitDownloadAdapter::finished(WebKitDownload*, gpointer data) {
  const auto self = std::exchange(static_cast<WebKitDownloadAdapter*>(data)->self_, nullptr);
  const auto delegate = self ? self->delegate_.lock() : nullptr;
  if (!delegate) return;
  if (self->failure_)
    delegate->didFail(self, *self->failure_);
  else
    delegate->didFinish(self);
}

}  // namespace orvel
