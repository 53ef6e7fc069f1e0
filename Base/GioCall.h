#pragma once

#include <gio/gio.h>

#include <memory>
#include <tuple>
#include <utility>

#include "Base/GRef.h"

namespace orvel {

namespace detail {

// GIO's three shapes of functions that take over the result of a call.
template <class T, class Source>
T finishGioCall(T (*finish)(Source*, GAsyncResult*, GError**), GObject* source,
                GAsyncResult* result, GError** error) {
  return finish(reinterpret_cast<Source*>(source), result, error);
}
template <class T, class Source>
T finishGioCall(T (*finish)(Source*, GAsyncResult*), GObject* source, GAsyncResult* result,
                GError**) {
  return finish(reinterpret_cast<Source*>(source), result);
}
template <class T>
T finishGioCall(T (*finish)(GAsyncResult*, GError**), GObject*, GAsyncResult* result,
                GError** error) {
  return finish(result, error);
}

}  // namespace detail

// An asynchronous call of GIO, made by `then`, which takes what comes of it:
//
//   gioCall(g_bus_get, G_BUS_TYPE_SESSION, nullptr)
//       .then(g_bus_get_finish, [](GDBusConnection* bus, const GErrorRef& error) {...});
//
// The arguments are the function's, up to its callback. What `then` is given is called exactly once
// and gone after that; it owns what it is handed as GIO says.
template <class Start, class... Arguments>
class [[nodiscard]] GioCall {
 public:
  explicit GioCall(Start start, Arguments... arguments) : start_(start), arguments_(arguments...) {}

  // `done(value, error)`: what `finish` returns, and the error that it reports, null for none.
  template <class Finish, class Done>
  void then(Finish finish, Done done) && {
    std::move(*this).then(
        [finish, done = std::move(done)](GObject* source, GAsyncResult* result) mutable {
          GError* error = nullptr;
          auto value = detail::finishGioCall(finish, source, result, &error);
          done(value, GErrorRef(error));
        });
  }

  // `done(source, result)`, for a result that takes more to be taken over.
  template <class Done>
  void then(Done done) && {
    const auto call = [](GObject* source, GAsyncResult* result, gpointer data) {
      const std::unique_ptr<Done> held(static_cast<Done*>(data));
      (*held)(source, result);
    };
    std::apply(
        [&](Arguments... arguments) {
          start_(arguments..., static_cast<GAsyncReadyCallback>(call), new Done(std::move(done)));
        },
        arguments_);
  }

 private:
  Start start_;
  std::tuple<Arguments...> arguments_;
};

template <class Start, class... Arguments>
GioCall<Start, Arguments...> gioCall(Start start, Arguments... arguments) {
  return GioCall<Start, Arguments...>(start, arguments...);
}

}  // namespace orvel
