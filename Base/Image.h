#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvel {

class Image;
// Images are shared and never change; two are the same when they are the same object.
using ImageRef = std::shared_ptr<const Image>;

// A picture in memory: rows from top to bottom, four bytes a pixel in the order red, green, blue,
// alpha, colors not multiplied by alpha, no padding between rows.
class Image {
 public:
  static constexpr int kMaxSide = 4096;

  // Decodes a picture file of any format that the system's loaders know. Null when the bytes are no
  // picture, are cut off, or when a side is longer than `largestSide` pixels, which is found out
  // before it is unpacked. Safe on any thread.
  static ImageRef decode(std::string_view bytes, int largestSide = kMaxSide);
  // The same, made to fit into a square of `side` pixels: a drawing is drawn in that size, a larger
  // picture shrinks, a smaller one stays.
  static ImageRef decodeIcon(std::string_view bytes, int side);

  // `pixels` holds width * height * 4 bytes; null when it does not, or when a side is not positive.
  static ImageRef make(int width, int height, std::vector<uint8_t> pixels);

  int width() const { return width_; }
  int height() const { return height_; }
  const std::vector<uint8_t>& pixels() const { return pixels_; }

  // The picture as a PNG file; empty when the system has no encoder.
  std::string encodedPNG() const;

 private:
  Image(int width, int height, std::vector<uint8_t> pixels);

  int width_;
  int height_;
  std::vector<uint8_t> pixels_;
};

}  // namespace orvel
