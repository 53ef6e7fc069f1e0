#include "Desktop/Gtk/Textures.h"

namespace orvel {

GRef<GdkTexture> textureOf(const ImageRef& image) {
  if (!image) return {};
  auto* owner = new ImageRef(image);
  GBytes* bytes = g_bytes_new_with_free_func(
      image->pixels().data(), image->pixels().size(),
      [](gpointer held) { delete static_cast<ImageRef*>(held); }, owner);
  auto* texture = gdk_memory_texture_new(image->width(), image->height(), GDK_MEMORY_R8G8B8A8,
                                         bytes, static_cast<gsize>(image->width()) * 4);
  g_bytes_unref(bytes);
  return GRef<GdkTexture>::adopt(texture);
}

}  // namespace orvel
