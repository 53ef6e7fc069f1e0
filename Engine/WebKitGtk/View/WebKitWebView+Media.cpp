#include <cstdlib>
#include <utility>

#include "Engine/WebKitGtk/Scripts/EngineScripts.h"
#include "Engine/WebKitGtk/View/WebKitWebView.h"
#include "Engine/WebKitGtk/WebKitEngine.h"

// What a page plays and records.
namespace orvel {

namespace {

// What a frame's elements do, in bits.
enum Media { kHasMedia = 1, kPlays = 2, kIsLoud = 4, kPlaysVideo = 8 };

CaptureState captureState(WebKitMediaCaptureState state) {
  switch (state) {
    case WEBKIT_MEDIA_CAPTURE_STATE_ACTIVE:
      return CaptureState::Active;
    case WEBKIT_MEDIA_CAPTURE_STATE_MUTED:
      return CaptureState::Muted;
    default:
      return CaptureState::None;
  }
}

}  // namespace

void WebKitWebView::connectMedia() {
  connect(
      "notify::is-playing-audio", +[](::WebKitWebView*, GParamSpec*, gpointer data) {
        static_cast<WebKitWebView*>(data)->mediaChanged();
      });
}

void WebKitWebView::pauseAllMediaPlayback() {
  evaluateInFrames(engine_scripts::kPauseMedia, ContentWorld::named(engine_scripts::kWorld), 0,
                   [](const FrameResults&) {});
}

void WebKitWebView::setMuted(bool isMuted) { webkit_web_view_set_is_muted(view_.get(), isMuted); }

void WebKitWebView::requestMediaPlaybackState(std::function<void(MediaPlaybackState)> answer) {
  evaluateInFrames(
      engine_scripts::kMediaState, ContentWorld::named(engine_scripts::kWorld), 0,
      [weak = weak_from_this(), answer = std::move(answer)](const FrameResults& results) {
        int bits = 0;
        for (const auto& result : results)
          bits |= result ? static_cast<int>(std::strtol(result->c_str(), nullptr, 10)) : 0;
        const auto self = weak.lock();
        // What a script plays without an element in the page is only heard; of a video that the
        // page itself has muted the engine says that it is heard, too.
        const bool isHeard = self && webkit_web_view_is_playing_audio(self->view_.get());
        const bool isPlaying = isHeard || (bits & kPlays);
        if (self)
          self->setPlayingMedia({.audio = isHeard && (!(bits & kPlays) || (bits & kIsLoud)),
                                 .video = (bits & kPlaysVideo) != 0});
        answer(isPlaying          ? MediaPlaybackState::Playing
               : bits & kHasMedia ? MediaPlaybackState::Paused
                                  : MediaPlaybackState::None);
      });
}

void WebKitWebView::mediaChanged() {
  mediaTimer_ = engine_.scheduler().start(askForMedia(weak_from_this()));
}

Task<> WebKitWebView::askForMedia(std::weak_ptr<WebKitWebView> weak) {
  constexpr Duration kBurst = 300ms;
  const SleepResult slept = co_await sleep(kBurst);
  const auto self = weak.lock();
  if (self && slept == SleepResult::Done)
    self->requestMediaPlaybackState([](MediaPlaybackState) {});
}

void WebKitWebView::setPlayingMedia(PlayingMedia media) {
  if (std::exchange(playingMedia_, media) != media) notify(WebViewProperty::PlayingMedia);
}

CaptureState WebKitWebView::cameraCaptureState() const {
  return captureState(webkit_web_view_get_camera_capture_state(view_.get()));
}

CaptureState WebKitWebView::microphoneCaptureState() const {
  return captureState(webkit_web_view_get_microphone_capture_state(view_.get()));
}

void WebKitWebView::endCapture() {
  webkit_web_view_set_camera_capture_state(view_.get(), WEBKIT_MEDIA_CAPTURE_STATE_NONE);
  webkit_web_view_set_microphone_capture_state(view_.get(), WEBKIT_MEDIA_CAPTURE_STATE_NONE);
}

}  // namespace orvel
