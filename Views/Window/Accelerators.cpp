#include "Views/Window/Accelerators.h"

#include <string>

#include "Base/Observable.h"
#include "Models/Commands/CommandList.h"

namespace orvel {

namespace {

// What the shortcuts of one window share.
struct Context {
  CommandList& commands;
  std::function<std::optional<bool>(ActionID)> meansHere;

  bool perform(ActionID action) const {
    const auto answer = meansHere ? meansHere(action) : std::nullopt;
    const bool wasPerformed = answer ? *answer : commands.performAction(action);
    // What the keys have opened takes the keyboard now: the next key may be waiting already.
    flushEffects();
    return wasPerformed;
  }
};

GtkShortcut* makeShortcut(const std::shared_ptr<Context>& context, const ActionInfo& action) {
  struct Binding {
    std::shared_ptr<Context> context;
    ActionID action;
  };
  return gtk_shortcut_new(gtk_shortcut_trigger_parse_string(std::string(action.keys).c_str()),
                          gtk_callback_action_new(
                              [](GtkWidget*, GVariant*, gpointer data) -> gboolean {
                                const auto& binding = *static_cast<Binding*>(data);
                                return binding.context->perform(binding.action);
                              },
                              new Binding{context, action.id},
                              [](gpointer data) { delete static_cast<Binding*>(data); }));
}

}  // namespace

bool worksUnderSheet(ActionID action) {
  switch (action) {
    case ActionID::Quit:
    case ActionID::CloseWindow:
    case ActionID::Minimize:
    case ActionID::Zoom:
    case ActionID::ToggleFullScreen:
      return true;
    default:
      return false;
  }
}

void installAccelerators(GtkWidget* window, CommandList& commands,
                         std::function<std::optional<bool>(ActionID)> meansHere) {
  const auto context = std::make_shared<Context>(Context{commands, std::move(meansHere)});
  const struct {
    KeyReach reach;
    GtkPropagationPhase phase;
  } kinds[] = {{KeyReach::Everywhere, GTK_PHASE_CAPTURE},
               {KeyReach::AfterOthers, GTK_PHASE_BUBBLE}};
  for (const auto& kind : kinds) {
    auto* controller = GTK_SHORTCUT_CONTROLLER(gtk_shortcut_controller_new());
    gtk_shortcut_controller_set_scope(controller, GTK_SHORTCUT_SCOPE_GLOBAL);
    gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(controller), kind.phase);
    for (const ActionInfo& action : actionCatalog())
      if (action.reach == kind.reach && !action.keys.empty())
        gtk_shortcut_controller_add_shortcut(controller, makeShortcut(context, action));
    gtk_widget_add_controller(window, GTK_EVENT_CONTROLLER(controller));
  }
}

}  // namespace orvel
