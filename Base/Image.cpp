#include "Base/Image.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "Base/GRef.h"

namespace orvel {

namespace {

template <class T>
struct Unref {
  void operator()(T* object) const { g_object_unref(object); }
};
using Pixbuf = std::unique_ptr<GdkPixbuf, Unref<GdkPixbuf>>;
using Loader = std::unique_ptr<GdkPixbufLoader, Unref<GdkPixbufLoader>>;

// Decides the size of a picture before its loader allocates.
struct Sizing {
  int largestSide;
  int side = 0;  // of the square to fit into; 0: none
  bool isTooLarge = false;

  static void prepared(GdkPixbufLoader* loader, int width, int height, gpointer self) {
    auto& sizing = *static_cast<Sizing*>(self);
    if (width > sizing.largestSide || height > sizing.largestSide) {
      sizing.isTooLarge = true;
      // Keeps a bomb from being unpacked.
      return gdk_pixbuf_loader_set_size(loader, 1, 1);
    }
    const int longest = std::max(width, height);
    const GText format(gdk_pixbuf_format_get_name(gdk_pixbuf_loader_get_format(loader)));
    const bool isDrawing = std::string_view(format.get()) == "svg";
    if (sizing.side == 0 || longest < 1 || (longest <= sizing.side && !isDrawing)) return;
    const double scale = static_cast<double>(sizing.side) / longest;
    gdk_pixbuf_loader_set_size(loader, std::max(1, static_cast<int>(width * scale)),
                               std::max(1, static_cast<int>(height * scale)));
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

namespace {

ImageRef decoded(std::string_view bytes, Sizing sizing) {
  const Loader loader(gdk_pixbuf_loader_new());
  g_signal_connect(loader.get(), "size-prepared", G_CALLBACK(&Sizing::prepared), &sizing);
  const bool isWritten = gdk_pixbuf_loader_write(
      loader.get(), reinterpret_cast<const guchar*>(bytes.data()), bytes.size(), nullptr);
  // A loader must be closed even after a failure.
  const bool isClosed = gdk_pixbuf_loader_close(loader.get(), nullptr);
  if (!isWritten || !isClosed || sizing.isTooLarge) return nullptr;
  const GdkPixbuf* pixbuf = gdk_pixbuf_loader_get_pixbuf(loader.get());
  if (!pixbuf) return nullptr;
  return Image::make(gdk_pixbuf_get_width(pixbuf), gdk_pixbuf_get_height(pixbuf),
                     packedRGBA(pixbuf));
}

}  // namespace

ImageRef Image::decode(std::string_view bytes, int largestSide) {
  return decoded(bytes, {.largestSide = largestSide});
}

ImageRef Image::decodeIcon(std::string_view bytes, int side) {
  return decoded(bytes, {.largestSide = kMaxSide, .side = side});
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
