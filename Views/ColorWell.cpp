#include "Views/ColorWell.h"

#include <glib/gi18n.h>

#include <numbers>

#include "DesignSystem/Icons.h"
#include "DesignSystem/StyleSheet.h"

namespace orvel {

namespace {

constexpr int kSize = 36;
constexpr double kDisc = 10;  // radius

void setColor(const Cairo::RefPtr<Cairo::Context>& context, Color color) {
  context->set_source_rgb(color.red / 255.0, color.green / 255.0, color.blue / 255.0);
}

}  // namespace

ColorWell::ColorWell(const Theme& theme) : theme_(theme) {
  add_css_class("well");
  set_halign(Gtk::Align::CENTER);
  disc_.set_content_width(kSize);
  disc_.set_content_height(kSize);
  disc_.set_draw_func(
      [this](const auto& context, int width, int height) { draw(context, width, height); });
  set_child(disc_);
  const std::string name(theme.name);
  set_tooltip_text(name);
  setAccessibleLabel(*this, name);
  signal_toggled().connect([this] { redraw(); });
}

void ColorWell::draw(const Cairo::RefPtr<Cairo::Context>& context, int width, int height) const {
  constexpr double kTurn = 2 * std::numbers::pi;
  const auto& look = theme_.in(StyleSheet::scheme());
  const double x = width / 2.0;
  const double y = height / 2.0;
  setColor(context, look.backdrop.bottom);
  context->arc(x, y, kSize / 2.0, 0, kTurn);
  context->fill();
  setColor(context, look.backdrop.top);
  context->arc(x, y, kSize / 2.0 - 1, 0, kTurn);
  context->fill();
  setColor(context, look.accent);
  context->arc(x, y, kDisc, 0, kTurn);
  context->fill();
  if (!get_active()) return;
  setColor(context, look.onAccent);
  context->set_line_width(1.5);
  context->set_line_cap(Cairo::Context::LineCap::ROUND);
  context->set_line_join(Cairo::Context::LineJoin::ROUND);
  context->move_to(x - 4, y);
  context->line_to(x - 1, y + 3);
  context->line_to(x + 4, y - 3);
  context->stroke();
}

}  // namespace orvel
