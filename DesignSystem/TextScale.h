#pragma once

#include <gtkmm/image.h>

namespace orvel {

// How many times larger than ordinary the desktop's text is; at least 1.
[[nodiscard]] double textScale();

// A length of the ordinary size of text at the present one, in whole pixels.
[[nodiscard]] int scaledWithText(int pixels);

// A button's icon grows by half at most: its button keeps its size.
enum class IconPlace { BesideText, InButton };

// Makes an icon `size` pixels large, and as much larger as the desktop's text, also when that
// changes.
void setIconSize(Gtk::Image& image, int size, IconPlace place = IconPlace::BesideText);

}  // namespace orvel
