#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Base/EditingCommand.h"
#include "Base/Image.h"
#include "Base/Observation.h"
#include "BrowserCore/Look/Theme.h"
#include "BrowserCore/Result.h"
#include "Engine/Navigation.h"
#include "Engine/PageHit.h"
#include "Engine/UserContent.h"
#include "Engine/WebViewConfiguration.h"

// The toolkit's widget, named and never looked into on this floor.
using GtkWidget = struct _GtkWidget;  // NOLINT(bugprone-reserved-identifier): the toolkit's own tag

namespace orvel {

class NavigationDelegate;
class UIDelegate;

enum class WebViewProperty {
  Title,
  URL,
  IsLoading,
  EstimatedProgress,
  CanGoBack,
  CanGoForward,
  IsResponsive,
  IsBlank,
  PlayingMedia,
  Capture,  // of the camera or the microphone
};
enum class MediaPlaybackState { None = 0, Playing = 1, Paused = 2, Suspended = 3 };

// What a page plays at the moment.
struct PlayingMedia {
  // It would be heard if the view were not muted: what the page mutes by itself is not.
  bool audio = false;
  bool video = false;

  friend bool operator==(const PlayingMedia&, const PlayingMedia&) = default;
};

enum class CaptureState { None = 0, Active = 1, Muted = 2 };
enum class ReloadSource { Cache, Origin };

// In the page's view coordinates, CSS pixels.
struct PageRect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  friend bool operator==(const PageRect&, const PageRect&) = default;
};

struct SnapshotRequest {
  // Absent: the whole visible part.
  std::optional<PageRect> rect;
  // Scales the picture down to this width in CSS pixels, keeping its shape; absent: as it is shown.
  std::optional<int> width;
};

struct FindConfiguration {
  bool backwards = false;
  bool isCaseSensitive = false;
  bool wraps = true;
};

// The value as JSON text; "null" for what JSON cannot express. Fails when the script threw, the
// page was gone or the frame does not exist.
using ScriptResult = Result<std::string, std::string>;

// The page as a file: its bytes. The error is a sentence for the user.
using PageFile = Result<std::string, std::string>;

// What brings a page back.
struct InteractionState {
  std::string bytes;  // opaque: the back and forward list with scroll positions
  URL address;        // that of the list's current entry

  friend bool operator==(const InteractionState&, const InteractionState&) = default;
};

// A live page: the engine's view with its web process.
//
// All operations belong to the main thread. Answers of asynchronous operations come on a later
// turn, exactly once, also when the view or its page's process has died meanwhile: with the answer
// of a failure, as from a page that has not taken a question up within some seconds. While a
// dialog of the page is open it may take longer.
// Destroying the view ends its page; the process goes when no view uses it.
class WebView {
 public:
  virtual ~WebView() = default;

  // Both may be null; they are not owned and are asked no more once cleared.
  virtual void setNavigationDelegate(NavigationDelegate* delegate) = 0;
  virtual void setUIDelegate(UIDelegate* delegate) = 0;
  virtual const WebViewConfiguration& configuration() const = 0;

  // Loading. What the program asks for here reaches the page also while it hangs: a process that
  // does not take it up within some seconds is replaced.
  virtual void load(const URLRequest& request) = 0;
  // Shows `html` in the place of the page of `baseURL`: the address reads so, relative links
  // resolve against it, and reloading loads that address. Without one the address is about:blank.
  // The delegate is told of its commit and of no finish.
  virtual void loadHTMLString(const std::string& html, const std::optional<URL>& baseURL) = 0;
  virtual void reload(ReloadSource source) = 0;
  // Gives up what is loading, of which nothing more is told unless it has been committed.
  virtual void stopLoading() = 0;
  virtual void goBack() = 0;
  virtual void goForward() = 0;

  // The way back to the committed page; absent when there is none yet.
  virtual std::optional<InteractionState> interactionState() const = 0;
  // Takes such bytes back and loads the current entry; returns whether it did. Bytes that the
  // engine refuses, or that lead nowhere, load nothing.
  virtual bool setInteractionState(const std::string& bytes) = 0;

  // What the engine reports of the page.
  virtual std::optional<std::string> title() const = 0;
  virtual std::optional<URL> url() const = 0;
  // The origin of the page that is shown, also while another one loads: "https://example.com" or
  // "http://example.com:8080". Absent before the first commit, after the process's end, for a page
  // that stands in for another, and for blank pages, files and data.
  virtual std::optional<std::string> committedOrigin() const = 0;
  virtual bool isLoading() const = 0;
  // 0 to 1.
  virtual double estimatedProgress() const = 0;
  virtual bool canGoBack() const = 0;
  virtual bool canGoForward() const = 0;
  // `changed` runs on the main thread after each change, with no call for the present value.
  [[nodiscard]] virtual Observation observe(WebViewProperty property,
                                            std::function<void()> changed) = 0;

  // Whether the page answers. It turns false when input or a load has waited for some seconds, and
  // true again with the answer.
  virtual bool isResponsive() const = 0;
  // Ends the page's process without a call of `webContentProcessDidTerminate`. The history stays:
  // the next load, reload or step starts a new process.
  virtual void endProcess() = 0;
  // Asks the page whether it may be closed; a page that guards changes has the user asked by
  // `runBeforeUnloadPanel`. Answers true within the call where nothing is guarded, and after some
  // seconds for a page that does not answer.
  virtual void requestClose(std::function<void(bool mayClose)> answer) = 0;

  // Nothing of a page has been drawn since the view, or its process, was made: it shows white.
  virtual bool isBlank() const = 0;

  // What shows where the page paints nothing, white at first. Below an opacity of 1 what lies under
  // the view shows through.
  virtual void setBackground(const Color& color, double opacity) = 0;

  // Lets the view's pages load what these patterns match, although its scheme or its origin keeps
  // it from them: "orvel-extension://<host>/pictures/*". Another list replaces this one, but pages
  // that share the view's process keep what was allowed to them.
  virtual void setAccessiblePatterns(const std::vector<std::string>& patterns) = 0;

  // 1.0 is actual size.
  virtual double pageZoom() const = 0;
  virtual void setPageZoom(double zoom) = 0;
  // Gives the screen back that an element of the page fills. Nothing when none does.
  virtual void exitFullscreen() = 0;

  // The view stands in a window and is mapped there: it is on screen.
  virtual bool isInWindow() const = 0;
  // The view is on screen and holds this point, which is counted from the top left corner of its
  // window.
  virtual bool holdsPoint(double x, double y) const = 0;
  virtual void focus() = 0;
  // The page's cursor is in a field or another part that can be edited.
  virtual bool isEditing() const = 0;
  // The developer tools: beside the page or in a window of their own, as they were left.
  virtual bool isInspectorOpen() const = 0;
  virtual void openInspector() = 0;
  virtual void closeInspector() = 0;
  // Acts where the page's cursor or selection is.
  virtual void edit(EditingCommand command) = 0;
  // Takes the view out of its parent widget, if it is in one.
  virtual void removeFromParent() = 0;
  // The widget to put on screen; owned by the view. Null in an engine without an interface.
  virtual GtkWidget* widget() = 0;

  // Null image: the page could not be drawn.
  virtual void takeSnapshot(const SnapshotRequest& request,
                            std::function<void(ImageRef)> answer) = 0;
  // The page's whole length.
  virtual void createPDF(std::function<void(PageFile)> answer) = 0;
  // The page with all it shows, in one MHTML file.
  virtual void createArchive(std::function<void(PageFile)> answer) = 0;
  // The document as the server sent it, in UTF-8. Absent: there is none, as in a page that stands
  // in for another.
  virtual void readSource(std::function<void(std::optional<std::string>)> answer) = 0;
  virtual void print() = 0;  // returns when the user has answered its dialog
  virtual void find(const std::string& text, const FindConfiguration& configuration,
                    std::function<void(bool matchFound)> answer) = 0;
  // Takes the marks of `find` off the page; its last match stays selected.
  virtual void endFind() = 0;

  // Evaluates an expression or program; absent `frame` is the main frame.
  virtual void evaluateJavaScript(const std::string& script, const ContentWorld& world,
                                  const std::optional<FrameInfo>& frame,
                                  std::function<void(ScriptResult)> answer) = 0;
  // Runs the body of an async function in the main frame. `arguments` is a JSON object whose
  // members are its parameters; what it returns is awaited, until another page is committed.
  virtual void callAsyncJavaScript(const std::string& body, const std::string& arguments,
                                   const ContentWorld& world,
                                   std::function<void(ScriptResult)> answer) = 0;

  // What the page and its frames play. Follows a change within a second, and every answer of
  // `requestMediaPlaybackState`; what the engine never sees, such as silent video that a script
  // takes out of the page, shows only with such an answer.
  virtual PlayingMedia playingMedia() const = 0;
  virtual void pauseAllMediaPlayback() = 0;
  // Does nothing once the media of the latest `showContextMenu` are gone.
  virtual void controlMedia(MediaCommand command) = 0;
  // Silences the page with all its frames, the coming ones too. What the page mutes by itself is
  // apart from this.
  virtual void setMuted(bool isMuted) = 0;
  virtual void requestMediaPlaybackState(std::function<void(MediaPlaybackState)> answer) = 0;
  virtual CaptureState cameraCaptureState() const = 0;
  virtual CaptureState microphoneCaptureState() const = 0;
  // Takes camera and microphone away from the page, which has to ask again.
  virtual void endCapture() = 0;
};

}  // namespace orvel
