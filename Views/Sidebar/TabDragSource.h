#pragma once

#include <gtkmm/widget.h>

#include <functional>

#include "Models/Sidebar/TabDestination.h"
#include "Models/Tab/BrowserTab.h"

namespace orvel {

// The type of the drags that carry a tab inside this program.
inline constexpr const char* kTabDragType = "application/com.brinemark.orvel.tab";

// The tab that is being dragged from the sidebar; null outside of a drag.
struct SidebarDrag {
  TabRef tab;
};

// Makes a widget a place from which the tab that it shows is dragged. `tab` answers it when a drag
// begins, null for none; `changed` runs when a drag begins and ends.
void makeTabDragSource(Gtk::Widget& widget, SidebarDrag& drag, std::function<TabRef()> tab,
                       std::function<void(bool isDragged)> changed);

}  // namespace orvel
