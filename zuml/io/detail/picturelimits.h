/// What a header of a compressed picture may announce.
#pragma once

#include <algorithm>

#include "zuml/core/xqexception.h"
#include "zuml/io/detail/files.h"

namespace zuml_detail {

// Deflate makes at most 1032 bytes of one, LZW about 1400, and JPEG about 1200.
inline constexpr std::int64_t kMostExpansion = 2048;

// A row takes the codecs as much time as some hundred bytes, even where it has one pixel.
inline constexpr std::int64_t kRowCost = 256;

/// A picture as its header tells it.
struct AnnouncedPicture {
  std::int64_t width;
  std::int64_t height;
  int channels;
  int pixel_bytes;  // of all channels
  // What the codec hands out, which is less than the picture where a pixel has less than a byte.
  std::int64_t decoded_bytes;
};

/// Refuses a picture that no block can hold, and one beyond some megabytes that no file of this
/// length can hold: a few bytes may not take memory and time at will.
inline void RequirePicture(const char* operation, const char* path, const AnnouncedPicture& picture,
                           std::int64_t file_bytes, std::int64_t most_expansion = kMostExpansion) {
  const std::int64_t bytes = GetBlockBytes({picture.width, picture.height, picture.pixel_bytes});
  const auto refuse = [&](const char* why) {
    throw XQException("%s: \"%s\" %s %lld x %lld pixels with %d channels", operation, path, why,
                      static_cast<long long>(picture.width), static_cast<long long>(picture.height),
                      picture.channels);
  };
  if (bytes < 0) refuse("is beyond the limits with");
  const std::int64_t work = std::max(picture.decoded_bytes, picture.height * kRowCost);
  const bool small = bytes <= kFreeBytes && work <= kFreeBytes;
  if (!small && work / most_expansion > file_bytes) refuse("is too short for");
}

}  // namespace zuml_detail
