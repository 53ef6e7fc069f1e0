#pragma once

#include <gdk/gdk.h>

#include "Base/GRef.h"
#include "Base/Image.h"

namespace orvel {

// The image as the toolkit draws it; null for no image.
GRef<GdkTexture> textureOf(const ImageRef& image);

}  // namespace orvel
