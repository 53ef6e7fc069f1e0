#include "Views/Spaces/ColorWell.h"

#include <numbers>

#include "Base/Texts.h"
#include "DesignSystem/Icons.h"
#include "DesignSystem/Paint.h"
#include "DesignSystem/Palette.h"
#include "DesignSystem/StyleSheet.h"

namespace orvel {

namespace {

constexpr int kSize = 36;
constexpr double kDisc = 10;    // radius
constexpr double kRing = 0.16;  // of the ink

void addStop(const Cairo::RefPtr<Cairo::LinearGradient>& gradient, double at, Color color) {
  gradient->add_color_stop_rgb(at, color.red / 255.0, color.green / 255.0, color.blue / 255.0);
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
  const std::string name = _(theme.name);
  set_tooltip_text(name);
  setAccessibleLabel(*this, name);
  signal_toggled().connect([this] { redraw(); });
}

void ColorWell::draw(const Cairo::RefPtr<Cairo::Context>& context, int width, int height) const {
  constexpr double kTurn = 2 * std::numbers::pi;
  const auto scheme = StyleSheet::scheme();
  const auto& look = theme_.in(scheme);
  const double x = width / 2.0;
  const double y = height / 2.0;
  const double radius = kSize / 2.0;
  const auto ground = Cairo::LinearGradient::create(0, y - radius, 0, y + radius);
  addStop(ground, 0, look.backdrop.top);
  addStop(ground, 1, look.backdrop.bottom);
  context->set_source(ground);
  context->arc(x, y, radius, 0, kTurn);
  context->fill();
  if (!get_active()) {
    setSource(context->cobj(), paletteOf(theme_, scheme).ink, kRing);
    context->set_line_width(1);
    context->arc(x, y, radius - 0.5, 0, kTurn);
    context->stroke();
  }
  setSource(context->cobj(), look.accent, 1);
  context->arc(x, y, kDisc, 0, kTurn);
  context->fill();
  if (!get_active()) return;
  setSource(context->cobj(), look.onAccent, 1);
  context->set_line_width(1.5);
  context->set_line_cap(Cairo::Context::LineCap::ROUND);
  context->set_line_join(Cairo::Context::LineJoin::ROUND);
  context->move_to(x - 4, y);
  context->line_to(x - 1, y + 3);
  context->line_to(x + 4, y - 3);
  context->stroke();
}

}  // namespace orvel
