#pragma once

#include <gtkmm/widget.h>

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "Base/Spring.h"
#include "DesignSystem/SpringAnimation.h"
#include "Views/CommandBar/SuggestionRow.h"

namespace orvel {

// The rows of the command bar, one below the other. A row widget belongs to a place in the list and
// shows what stands there; where a change asks for motion, what stood elsewhere moves from there
// and what is new fades in, while the list grows or shrinks.
class CommandBarList final : public Gtk::Widget {
 public:
  CommandBarList();
  ~CommandBarList() override;

  void setRows(std::vector<SuggestionRowContent> rows, const std::optional<Spring>& motion);
  // Chooses one row; an index behind the last one chooses none.
  void setSelected(size_t index);

  size_t rowCount() const { return rows_.size(); }
  // The row at a height in the list; absent beside all rows.
  std::optional<size_t> rowAt(double y) const;
  // Where the row lies when nothing moves.
  struct Stretch {
    double top = 0;
    double height = 0;
  };
  Stretch stretch(size_t index) const { return stretches_[index]; }
  SuggestionRow& row(size_t index) { return *widgets_[index]; }

 protected:
  Gtk::SizeRequestMode get_request_mode_vfunc() const override;
  void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                     int& minimumBaseline, int& naturalBaseline) const override;
  void size_allocate_vfunc(int width, int height, int baseline) override;

 private:
  SuggestionRow& addRow();
  // Makes one of the rows that later lists will need; returns whether more are missing.
  bool prepareRow();
  double totalHeight() const;
  double shownHeight() const;
  void measureRows();

  std::vector<SuggestionRowContent> rows_;
  std::vector<Stretch> stretches_;
  guint preparing_ = 0;  // the source that makes rows ahead
  // At least as many as the longest list so far had rows.
  std::vector<std::unique_ptr<SuggestionRow>> widgets_;
  // For each row where it comes from, from its place; absent for one that is new.
  std::vector<std::optional<double>> offsets_;
  double heightChange_ = 0;  // what the list was higher before
  size_t selected_ = 0;
  // What is left of the present motion, from 1 to 0.
  SpringAnimation motion_;
};

}  // namespace orvel
