#pragma once

#include <glib-object.h>

#include <memory>
#include <utility>

namespace orvel {

// Owns one reference to a GObject.
template <class T>
class GRef {
 public:
  GRef() = default;
  // Takes over a reference that the caller owns ("transfer full").
  static GRef adopt(T* object) { return GRef(object); }
  // Adds a reference; a floating one is sunk.
  static GRef retain(T* object) {
    return GRef(object ? static_cast<T*>(g_object_ref_sink(object)) : nullptr);
  }
  GRef(const GRef& other) : object_(other.object_) {
    if (object_) g_object_ref(object_);
  }
  GRef(GRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  GRef& operator=(GRef other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~GRef() {
    if (object_) g_object_unref(object_);
  }

  T* get() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  explicit GRef(T* object) : object_(object) {}
  T* object_ = nullptr;
};

// A text that GLib allocated.
struct GFree {
  void operator()(void* memory) const { g_free(memory); }
};
using GText = std::unique_ptr<char, GFree>;

struct GErrorFree {
  void operator()(GError* error) const { g_error_free(error); }
};
using GErrorRef = std::unique_ptr<GError, GErrorFree>;

}  // namespace orvel
