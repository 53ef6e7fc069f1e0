#pragma once

#include <gtkmm/adjustment.h>
#include <gtkmm/widget.h>

#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "Base/GRef.h"
#include "Base/Spring.h"
#include "BrowserCore/Addresses/URL.h"
#include "DesignSystem/SpringAnimation.h"
#include "Views/Support/RowLayout.h"
#include "Views/Support/RowWidget.h"

namespace orvel {

// Where a dragged thing would land: in a gap in front of a row, or in a row.
struct RowDrop {
  enum class Place { Before, Into };
  Place place = Place::Before;
  size_t row = 0;  // for `Before`, the number of rows means the end

  friend bool operator==(const RowDrop&, const RowDrop&) = default;
};

// A pointer over a row; fractions of its width and height, from the leading top corner.
struct RowPoint {
  size_t row = 0;
  double x = 0;
  double y = 0;
};

// What is dragged over the list: something of this program's own, or a link.
enum class Dragged { Own, Link };

// A list of rows given as values and kept by key. Only the rows in view and half a screenful on
// either side exist as widgets; these are pooled and bound again. Each kind of row has one height,
// measured when it first occurs. Rows move to their new places by a spring where a change asks for
// it.
//
// It stands in a scrolled window's viewport, whose adjustment it follows. Arrow keys, Home and End
// move the focus from row to row, Tab enters and leaves the list as one thing; the list's role and
// the rows' are told to assistive technology.
class RowList : public Gtk::Widget {
 public:
  class Delegate {
   public:
    virtual std::unique_ptr<RowWidget> makeRow(SidebarRow::Kind kind) = 0;
    // What a drop at this point does; absent where it is not taken.
    virtual std::optional<RowDrop> dropAt(const RowPoint& point, Dragged what) = 0;
    // Our own was let go at a point that `dropAt` took. Returns whether something was done.
    virtual bool drop(const RowPoint& point) = 0;
    // The same for a link.
    virtual void dropLink(const RowPoint& point, const URL& link) = 0;
    // The keys move a row up (-1) or down (1) by one place. Returns whether it moves.
    virtual bool moveRow(size_t index, int step) = 0;

   protected:
    ~Delegate() = default;
  };

  // What has been done since the list was made.
  struct Counters {
    size_t built = 0;  // row widgets
    size_t bound = 0;  // bindings of a widget to a row
  };

  // The delegate outlives the list. `dragType` is the type of our own drags.
  RowList(Delegate& delegate, const std::string& label, const char* dragType);
  ~RowList() override;

  // Follows the scrolling of a viewport that holds this list.
  void setAdjustment(const Glib::RefPtr<Gtk::Adjustment>& adjustment);

  // Rows whose value changed are bound again, new ones appear, others leave. With a spring the
  // rows on screen move to their places; without one they stand there at once.
  void setRows(std::vector<SidebarRow> rows, const std::optional<Spring>& motion = std::nullopt);
  const std::vector<SidebarRow>& rows() const { return rows_; }
  std::optional<size_t> indexOf(const SidebarRow::Key& key) const;

  // Scrolls as little as brings the row into view.
  void scrollTo(const SidebarRow::Key& key);
  // The row's widget; null while it has none.
  RowWidget* widgetFor(const SidebarRow::Key& key) const;
  // Scrolls to the row and gives it the focus. Returns whether it took it.
  bool focusRow(size_t index);

  // Measures a kind of row, or builds the widget of one tab's row for later, unless there are
  // `count`; returns whether there was something to do.
  bool buildAhead(size_t count);

  const Counters& counters() const { return counters_; }
  size_t liveRowCount() const { return live_.size(); }

 protected:
  void on_realize() override;
  void on_unrealize() override;
  Gtk::SizeRequestMode get_request_mode_vfunc() const override;
  void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                     int& minimumBaseline, int& naturalBaseline) const override;
  void size_allocate_vfunc(int width, int height, int baseline) override;
  void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override;

 private:
  struct LiveRow {
    std::unique_ptr<RowWidget> widget;
    SidebarRow row;
    size_t index = 0;
    double offset = 0;  // from where it moves, times what is left of the motion
    bool isAppearing = false;
  };
  using LiveRows = std::unordered_map<SidebarRow::Key, LiveRow>;
  using Tops = std::unordered_map<SidebarRow::Key, double>;

  std::unique_ptr<RowWidget> makeWidget(SidebarRow::Kind kind);
  std::unique_ptr<RowWidget> takeWidget(SidebarRow::Kind kind);
  void putAside(SidebarRow::Kind kind, std::unique_ptr<RowWidget> widget);
  void release(LiveRow& live);
  void sync();
  void syncLater();
  void layOut(const std::optional<Spring>& motion);
  void rebindChanged();
  void moveFrom(const Tops& former, const Spring& spring);
  void measureRows();
  bool measure(SidebarRow::Kind kind);
  double shownTop(const LiveRow& live) const;
  RowLayout::Range wantedRows() const;
  std::optional<size_t> focusedRow() const;
  // The menu of a row that has the keyboard; null without one.
  GtkWidget* focusedMenu() const;
  bool keyPressed(guint key, Gdk::ModifierType state);
  bool moveFocus(size_t from, int step);
  bool moveRow(size_t index, guint key);
  bool enterFocus();
  static gboolean focusInDirection(GtkWidget* widget, GtkDirectionType direction);

  // The row below the pointer
  void followPointer();
  void followWindow();
  void pointerMoved(double x, double y);
  void updatePointed();
  void pickLater();
  void pickAnew();

  // Drags
  void installDropTarget(const char* dragType);
  void dragMoved(double x, double y);
  // The action for a drop here; none where it is not taken.
  GdkDragAction actionFor(GdkDrop* drop) const;
  bool dropLink(GdkDrop* drop, const RowPoint& point);
  void dragLeft();
  std::optional<RowPoint> pointAt(double x, double y) const;
  void setDrop(const std::optional<RowDrop>& drop);
  void updateAutoScroll(double y);
  bool autoScroll();
  static GdkDragAction dragMotion(GtkDropTargetAsync*, GdkDrop*, double x, double y, gpointer self);
  static void dragLeave(GtkDropTargetAsync*, GdkDrop*, gpointer self);
  static gboolean dragDrop(GtkDropTargetAsync*, GdkDrop* drop, double x, double y, gpointer self);

  Delegate& delegate_;
  Glib::RefPtr<Gtk::Adjustment> adjustment_;
  std::vector<SidebarRow> rows_;
  std::unordered_map<SidebarRow::Key, size_t> indices_;
  RowLayout layout_;
  // Absent until the list is realized: only then do its window's styles hold, and nothing is laid
  // out before. Zero for a kind that has not been measured.
  std::optional<RowLayout::Heights> heights_;
  gulong textSize_ = 0;  // the handler that follows it
  LiveRows live_;
  std::array<std::vector<std::unique_ptr<RowWidget>>, RowLayout::kKinds> pools_;
  Counters counters_;
  // Where the pointer rests, in the window; absent while it is not over the list.
  std::optional<std::pair<double, double>> resting_;
  std::optional<SidebarRow::Key> pointed_;
  // What is left of the rows' present motion, from 1 to 0.
  SpringAnimation motion_;
  bool isSyncPlanned_ = false;
  gulong picking_ = 0;  // waits for the end of the frame
  gulong window_ = 0;   // looks at whether the window has the keyboard
  // To be scrolled to when there is room for it.
  std::optional<SidebarRow::Key> toReach_;
  // Where the keyboard was last.
  std::optional<SidebarRow::Key> lastFocused_;

  // Lies below the rows, so that the pointer is never over the list itself.
  std::unique_ptr<Gtk::Widget> ground_;
  std::unique_ptr<Gtk::Widget> gap_;
  std::optional<RowDrop> drop_;
  Dragged dragged_ = Dragged::Own;
  const char* ownType_ = nullptr;
  // Outlived by links that are still being read.
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
  std::optional<std::pair<double, double>> pointer_;
  double autoScrollSpeed_ = 0;
  bool isAutoScrolling_ = false;
};

}  // namespace orvel
