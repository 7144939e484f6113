/// What the drawing operations ask of channels.
#pragma once

#include <cstdint>

#include "zuml/core/xqexception.h"
#include "zuml/core/zumraster.h"

namespace zuml_detail {

/// Throws "<operation>: Out of channel range" if the image does not have the channel.
inline void RequireChannel(const char* operation, const ZUMRaster& image, int channel) {
  if (channel < 0 || channel >= image.GetCSz()) {
    throw XQException("%s: Out of channel range", operation);
  }
}

/// A colour is drawn into the channels 0 to 2. An operation asks for the last one before it draws
/// into the first, so that an image without it stays as it is.
inline constexpr int kLastColourChannel = 2;

/// Calls draw(value, channel) for the colour's three channels.
template <class Draw>
void DrawInColour(std::uint32_t colour, Draw&& draw) {
  for (int c = 0; c <= kLastColourChannel; ++c) {
    draw(static_cast<ZUMByte>(colour >> (8 * c)), c);
  }
}

}  // namespace zuml_detail
