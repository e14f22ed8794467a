// Pictures in the XPM format: a C source whose strings are a head ("WIDTH HEIGHT COLOURS
// CHARACTERS"), the colours, and the rows of pixels.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vok {

struct Picture {
  static constexpr int MAX_WIDTH = 256;
  static constexpr int MAX_HEIGHT = 64;
  static const std::string TRANSPARENT;  ///< the colour "None"

  int width = 0;   ///< pixels
  int height = 0;  ///< pixels
  std::vector<std::string> colours;
  std::vector<int> pixels;  ///< row by row from the top, indices of `colours`

  /// The colour of a pixel; beyond the picture it is transparent.
  const std::string& at(int x, int y) const;
};

/// Reads the text of an XPM file. Nothing, with the reason in `error`, when it is none, or greater
/// than the limits above.
std::optional<Picture> readXpm(std::string_view text, std::string& error);

}  // namespace vok
