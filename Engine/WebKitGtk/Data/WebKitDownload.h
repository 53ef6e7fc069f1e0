#pragma once

#include <webkit/webkit.h>

#include <cstdint>
#include <map>

#include "Base/GRef.h"
#include "Engine/Download.h"

namespace orvel {

// Lives as long as the engine's own download, which it follows.
class WebKitDownloadAdapter final : public Download,
                                    public std::enable_shared_from_this<WebKitDownloadAdapter> {
 public:
  // `session` is the one that it was started in.
  static std::shared_ptr<WebKitDownloadAdapter> follow(WebKitDownload* download,
                                                       WebKitNetworkSession* session);
  static bool isFollowed(WebKitDownload* download);
  ~WebKitDownloadAdapter() override;

  std::optional<URL> originalURL() const override;
  std::optional<uint64_t> expectedBytes() const override;
  bool isEphemeral() const override { return isEphemeral_; }
  double fractionCompleted() const override;
  Observation observeProgress(std::function<void()> changed) override;
  void cancel() override;
  void setDelegate(std::weak_ptr<DownloadDelegate> delegate) override;

 private:
  WebKitDownloadAdapter(WebKitDownload* download, bool isEphemeral);
  static gboolean decideDestination(WebKitDownload*, const char* suggested, gpointer self);
  static void progressed(WebKitDownload*, GParamSpec*, gpointer self);
  static void failed(WebKitDownload*, GError* error, gpointer self);
  static void finished(WebKitDownload*, gpointer self);

  GRef<WebKitDownload> download_;
  const bool isEphemeral_;
  std::weak_ptr<DownloadDelegate> delegate_;
  std::map<uint64_t, std::function<void()>> observers_;
  uint64_t lastObserver_ = 0;
  std::optional<LoadError> failure_;
  // Cleared when the transfer has ended.
  std::shared_ptr<WebKitDownloadAdapter> self_;
};

}  // namespace orvel
