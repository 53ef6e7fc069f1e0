#include "Base/Image.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <utility>

namespace orvel {

namespace {

template <class T>
struct Unref {
  void operator()(T* object) const { g_object_unref(object); }
};
using Pixbuf = std::unique_ptr<GdkPixbuf, Unref<GdkPixbuf>>;
using Loader = std::unique_ptr<GdkPixbufLoader, Unref<GdkPixbufLoader>>;

struct SizeGuard {
  int largestSide;
  bool isTooLarge = false;

  // Runs before the loader allocates: asking for one pixel keeps a bomb from being unpacked.
  static void prepared(GdkPixbufLoader* loader, int width, int height, gpointer self) {
    auto& guard = *static_cast<SizeGuard*>(self);
    if (width <= guard.largestSide && height <= guard.largestSide) return;
    guard.isTooLarge = true;
    gdk_pixbuf_loader_set_size(loader, 1, 1);
  }
};

std::vector<uint8_t> packedRGBA(const GdkPixbuf* source) {
  const Pixbuf withAlpha(gdk_pixbuf_get_has_alpha(source)
                             ? GDK_PIXBUF(g_object_ref(const_cast<GdkPixbuf*>(source)))
                             : gdk_pixbuf_add_alpha(source, FALSE, 0, 0, 0));
  const size_t row = static_cast<size_t>(gdk_pixbuf_get_width(source)) * 4;
  const int height = gdk_pixbuf_get_height(source);
  const int stride = gdk_pixbuf_get_rowstride(withAlpha.get());
  const guint8* bytes = gdk_pixbuf_read_pixels(withAlpha.get());
  std::vector<uint8_t> pixels;
  pixels.reserve(row * static_cast<size_t>(height));
  for (int y = 0; y < height; ++y, bytes += stride) pixels.insert(pixels.end(), bytes, bytes + row);
  return pixels;
}

}  // namespace

Image::Image(int width, int height, std::vector<uint8_t> pixels)
    : width_(width), height_(height), pixels_(std::move(pixels)) {}

ImageRef Image::make(int width, int height, std::vector<uint8_t> pixels) {
  if (width <= 0 || height <= 0 ||
      pixels.size() != static_cast<size_t>(width) * static_cast<size_t>(height) * 4)
    return nullptr;
  return ImageRef(new Image(width, height, std::move(pixels)));
}

ImageRef Image::decode(std::string_view bytes, int largestSide) {
  const Loader loader(gdk_pixbuf_loader_new());
  SizeGuard guard{largestSide};
  g_signal_connect(loader.get(), "size-prepared", G_CALLBACK(&SizeGuard::prepared), &guard);
  const bool isWritten = gdk_pixbuf_loader_write(
      loader.get(), reinterpret_cast<const guchar*>(bytes.data()), bytes.size(), nullptr);
  // A loader must be closed even after a failure.
  const bool isClosed = gdk_pixbuf_loader_close(loader.get(), nullptr);
  if (!isWritten || !isClosed || guard.isTooLarge) return nullptr;
  const GdkPixbuf* pixbuf = gdk_pixbuf_loader_get_pixbuf(loader.get());
  if (!pixbuf) return nullptr;
  return make(gdk_pixbuf_get_width(pixbuf), gdk_pixbuf_get_height(pixbuf), packedRGBA(pixbuf));
}

std::string Image::encodedPNG() const {
  const Pixbuf pixbuf(gdk_pixbuf_new_from_data(pixels_.data(), GDK_COLORSPACE_RGB, TRUE, 8, width_,
                                               height_, width_ * 4, nullptr, nullptr));
  gchar* buffer = nullptr;
  gsize size = 0;
  if (!gdk_pixbuf_save_to_buffer(pixbuf.get(), &buffer, &size, "png", nullptr, nullptr)) return {};
  std::string result(buffer, size);
  g_free(buffer);
  return result;
}

}  // namespace orvel
