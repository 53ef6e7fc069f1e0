#pragma once

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/switch.h>

#include <functional>
#include <memory>
#include <vector>

#include "DesignSystem/Icons.h"
#include "DesignSystem/SiteIcon.h"
#include "Models/Tab/BrowserTab.h"
#include "Views/Settings/ChoiceButton.h"

namespace orvel {

class BrowserStore;

// What the user decides about one site: blocking, devices, zoom, hidden items and stored data.
class SiteSettingsView final : public Gtk::Box {
 public:
  // `close` takes the view away. The store outlives it.
  SiteSettingsView(BrowserStore& store, std::function<void()> close);

  // Follows the tab from now on; null: nothing.
  void show(const TabRef& tab);

 private:
  struct Device {
    PageDevice device;
    std::unique_ptr<ChoiceButton> choice;
  };

  void addHead();
  void addUse();
  void addBlocking();
  void addDevices();
  void addZoom();
  void addActions();
  Gtk::Box& addRow(const char* symbol, const std::string& title, Gtk::Widget& control);
  Gtk::Button& addAction(const char* symbol, std::function<void(TabRef)> perform);

  void follow();
  void showHead(const URL& address);
  void showUse();
  void showDevices(const std::string& host);
  std::string host() const;

  BrowserStore& store_;
  const std::function<void()> close_;
  TabRef tab_;
  SiteIcon icon_{20};
  Gtk::Label name_;
  Gtk::Label security_;
  Gtk::Image lock_;
  Gtk::Box use_;
  Gtk::Image useSymbol_;
  Gtk::Label useText_;
  Gtk::Button stop_;
  Gtk::Switch blocking_;
  std::vector<Device> devices_;
  Gtk::Button actualSize_;
  Gtk::Label percent_;
  Gtk::Button* showHidden_ = nullptr;
  std::vector<Effect> effects_;
};

// The symbol of the first of the devices that a page uses; empty without any.
[[nodiscard]] std::string filledSymbol(const std::set<PageDevice>& devices);

}  // namespace orvel
