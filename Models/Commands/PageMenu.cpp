#include "Models/Commands/PageMenu.h"

#include <algorithm>

#include "Base/Texts.h"
#include "BrowserCore/Addresses/TrackingParameters.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

using enum PageMenuCommand;

// In one line, in quotation marks that the page's own marks of direction cannot reach.
std::string quoted(const std::string& selection) {
  constexpr size_t kMaxShown = 30;
  std::string line;
  for (const char c : text::prefix(selection, 4 * kMaxShown)) {
    const bool isSpace = c == ' ' || c == '\t' || c == '\n' || c == '\r';
    if (!isSpace)
      line += c;
    else if (!line.empty() && line.back() != ' ')
      line += ' ';
  }
  for (size_t at = 0; (at = line.find("\u2069", at)) != std::string::npos;) line.erase(at, 3);
  if (line.ends_with(' ')) line.pop_back();
  if (line.size() > kMaxShown) line = text::prefix(line, kMaxShown) + "…";
  return "\u2068" + line + "\u2069";
}

class Rows {
 public:
  Rows(const PageHit& hit, const PageMenuState& state) : hit_(hit), state_(state) {}

  std::vector<PageMenuRow> make() {
    const bool isThing = hit_.link || hit_.picture || hit_.media;
    if (hit_.link) addLink();
    if (hit_.picture) addPicture();
    if (hit_.media) addMedia();
    if (hit_.isEditable)
      addField();
    else if (!hit_.selection.empty())
      addSelection();
    else if (!isThing)
      addPage();
    return std::move(rows_);
  }

 private:
  // The web's own addresses, and others to pages of their kind: what the engine keeps a page from,
  // such as the files of the machine, its menu does not open either.
  bool mayOpen(const URL& address) const {
    return address.hasScheme("http") || address.hasScheme("https") ||
           (state_.page && !address.hasScheme("javascript") && !address.hasScheme("blob") &&
            address.hasScheme(state_.page->scheme()));
  }
  static bool mayDownload(const URL& address) {
    return address.hasScheme("http") || address.hasScheme("https") || address.hasScheme("data");
  }

  void beginSection() { beginsSection_ = !rows_.empty(); }
  PageMenuRow& add(PageMenuCommand command, std::string title) {
    rows_.push_back({.command = command,
                     .title = std::move(title),
                     .beginsSection = std::exchange(beginsSection_, false)});
    return rows_.back();
  }
  PageMenuRow& add(PageMenuCommand command, ActionID action, const char* title = nullptr) {
    auto& row = add(command, title ? std::string(title) : _(actionInfo(action).title));
    row.action = action;
    return row;
  }

  void addLink() {
    const URL& link = *hit_.link;
    if (mayOpen(link)) {
      add(OpenLink, _("Open in New Tab"));
      add(OpenLinkInSplitView, _("Open in Split View"));
      add(OpenLinkInLittleWindow, _("Open in Little Window"));
      add(OpenLinkInPrivateWindow, _("Open in Private Window"));
      beginSection();
    }
    if (mayDownload(link)) add(DownloadLink, _("Download Link…"));
    add(CopyLink, _("Copy Link"));
    if (TrackingParameters::stripped(link)) add(CopyCleanLink, _("Copy Clean Link"));
    add(CopyMarkdownLink, _("Copy as Markdown Link"));
  }

  void addPicture() {
    const URL& picture = *hit_.picture;
    beginSection();
    if (mayOpen(picture) || picture.hasScheme("data")) {
      add(OpenPicture, _("Open Picture in New Tab"));
      beginSection();
    }
    if (mayDownload(picture)) {
      add(SavePicture, _("Save Picture…"));
      add(CopyPicture, _("Copy Picture"));
    }
    add(CopyPictureLink, _("Copy Picture Link"));
  }

  void addMedia() {
    const auto& media = *hit_.media;
    beginSection();
    add(TogglePlaying, media.isPaused ? _("Play") : _("Pause"));
    add(ToggleMuted, media.isMuted ? _("Unmute") : _("Mute"));
    add(ToggleLooping, _("Loop")).isOn = media.isLooping;
    add(ToggleControls, _("Show Controls")).isOn = media.hasControls;
    if (!hit_.mediaAddress) return;
    beginSection();
    add(CopyMediaLink, media.isVideo ? _("Copy Video Link") : _("Copy Audio Link"));
  }

  void addField() {
    beginSection();
    add(Undo, ActionID::Undo);
    add(Redo, ActionID::Redo);
    beginSection();
    const bool hasSelection = !hit_.selection.empty();
    add(Cut, ActionID::Cut).isEnabled = hasSelection;
    add(Copy, ActionID::Copy).isEnabled = hasSelection;
    add(Paste, ActionID::Paste);
    add(PasteAsPlainText, ActionID::PasteAsPlainText, _("Paste as Plain Text"));
    beginSection();
    add(SelectAll, ActionID::SelectAll);
    if (!hasSelection) return;
    beginSection();
    addSearch();
  }

  void addSearch() {
    add(Search, filled(_("Search {engine} for “{text}”"),
                       {{"engine", state_.searchEngine}, {"text", quoted(hit_.selection)}}));
    add(SearchInSplitView, _("Open Search in Split View"));
  }

  void addSelection() {
    beginSection();
    add(Copy, ActionID::Copy);
    addSearch();
    beginSection();
    add(Print, ActionID::Print);
  }

  void addPage() {
    add(Back, ActionID::Back).isEnabled = state_.canGoBack;
    add(Forward, ActionID::Forward).isEnabled = state_.canGoForward;
    add(Reload, ActionID::Reload, _("Reload"));
    beginSection();
    add(SavePage, ActionID::SavePage);
    add(Print, ActionID::Print);
    add(Capture, ActionID::Capture);
    beginSection();
    add(ViewSource, ActionID::ViewSource);
    add(Inspect, _("Inspect Element"));
  }

  const PageHit& hit_;
  const PageMenuState& state_;
  std::vector<PageMenuRow> rows_;
  bool beginsSection_ = false;
};

}  // namespace

std::vector<PageMenuRow> pageMenuRows(const PageHit& hit, const PageMenuState& state) {
  return Rows(hit, state).make();
}

}  // namespace orvel
