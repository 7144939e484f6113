/// Pictures made of several images: a picture with a coloured mask, and images side by side.
#pragma once

#include <concepts>
#include <cstddef>
#include <tuple>
#include <utility>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The image as a picture of three channels in bytes, with the three colours drawn where the mask
/// is true; blended by `alpha` as ZUMDrawMask does, or covering. The image has one channel, which
/// goes to all three, or three; a type other than byte goes through ZUMMaxcon first. The mask has
/// one channel: its further ones would be drawn into the channels behind, and there are none.
///
/// Throws XQException "ZUMOverlay: it only accepts one o three channels image", what ZUMMaxcon says
/// of an empty image that is not of bytes, and "out of channel range" for a mask of more channels.
/// Runs on the calling thread but for ZUMMaxcon.
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMByte> ZUMOverlay(const ZUMImage<P>& image,
                                                    const ZUMImage<ZUMBool>& mask, ZUMByte colour0,
                                                    ZUMByte colour1, ZUMByte colour2);
template <ZUMScalarPixel P>
[[nodiscard]] ZUML_API ZUMImage<ZUMByte> ZUMOverlay(const ZUMImage<P>& image,
                                                    const ZUMImage<ZUMBool>& mask, ZUMByte colour0,
                                                    ZUMByte colour1, ZUMByte colour2, double alpha);

/// All images of a null-ended array in one picture of bytes, each at its coordinates; the later of
/// two that overlap covers the earlier. A bool image becomes 255 and 0, bytes stay, other types go
/// through ZUMMaxcon, each image by itself. The region is the box around all images on X and Y, at
/// Z = T = 0: of an image with more planes, the one at 0 is seen. The picture has three channels if
/// one of the images has, and an image of one goes to all three; otherwise one channel. Where no
/// image lies it has the three colours, or the first alone. An empty image counts for the channels
/// only; without any other the result is empty.
///
/// Throws XQException "ZUMJointIm:: It don't accept images with %d channels" if that is neither 1
/// nor 3, "No se puede convertir una imagen de tipo Complex a Byte" (and likewise "Pointer"), and
/// "ZUMJointIm: A NULL pointer to an array of images are not allowed". Runs on the calling thread
/// but for ZUMMaxcon and ZUMImIf.
[[nodiscard]] ZUML_API ZUMImage<ZUMByte> ZUMJointIm(const ZUMGenericImage* const* images,
                                                    ZUMByte colour0, ZUMByte colour1,
                                                    ZUMByte colour2);
/// In a row: the first image is moved to begin at X = 0, each further one to begin where the one
/// before ends. On Y nothing moves. An empty image takes no place.
[[nodiscard]] ZUML_API ZUMImage<ZUMByte> ZUMHJointIm(const ZUMGenericImage* const* images,
                                                     ZUMByte colour0, ZUMByte colour1,
                                                     ZUMByte colour2);
/// In a column: the same along Y.
[[nodiscard]] ZUML_API ZUMImage<ZUMByte> ZUMVJointIm(const ZUMGenericImage* const* images,
                                                     ZUMByte colour0, ZUMByte colour1,
                                                     ZUMByte colour2);

namespace zuml_detail {

/// Whether these are the arguments of the forms without an array: two to ten images, then three
/// colours.
template <class... Args>
constexpr bool AreJointArguments() {
  constexpr std::size_t n = sizeof...(Args);
  if constexpr (n < 5 || n > 13) {
    return false;
  } else {
    const bool images[] = {std::derived_from<Args, ZUMGenericImage>...};
    const bool colours[] = {std::convertible_to<Args, int>...};
    for (std::size_t i = 0; i < n; ++i) {
      if (!(i < n - 3 ? images[i] : colours[i])) return false;
    }
    return true;
  }
}

/// The array form on the images in front of the colours.
template <class... Args>
ZUMImage<ZUMByte> JoinArguments(ZUMImage<ZUMByte> (*join)(const ZUMGenericImage* const*, ZUMByte,
                                                          ZUMByte, ZUMByte),
                                const Args&... args) {
  constexpr std::size_t n = sizeof...(Args) - 3;
  const std::tuple<const Args&...> all(args...);
  const auto colour = [](int value) { return static_cast<ZUMByte>(value); };
  return [&]<std::size_t... K>(std::index_sequence<K...>) {
    const ZUMGenericImage* const images[] = {&std::get<K>(all)..., nullptr};
    return join(images, colour(std::get<n>(all)), colour(std::get<n + 1>(all)),
                colour(std::get<n + 2>(all)));
  }
  (std::make_index_sequence<n>{});
}

}  // namespace zuml_detail

/// The same of two to ten images, of any pixel types, and three int colours, whose low bits count:
/// ZUMHJointIm(before, after, 0, 0, 0).
template <class... Args>
requires(zuml_detail::AreJointArguments<Args...>())
    [[nodiscard]] ZUMImage<ZUMByte> ZUMJointIm(const Args&... images_and_colours) {
  return zuml_detail::JoinArguments(ZUMJointIm, images_and_colours...);
}
template <class... Args>
requires(zuml_detail::AreJointArguments<Args...>())
    [[nodiscard]] ZUMImage<ZUMByte> ZUMHJointIm(const Args&... images_and_colours) {
  return zuml_detail::JoinArguments(ZUMHJointIm, images_and_colours...);
}
template <class... Args>
requires(zuml_detail::AreJointArguments<Args...>())
    [[nodiscard]] ZUMImage<ZUMByte> ZUMVJointIm(const Args&... images_and_colours) {
  return zuml_detail::JoinArguments(ZUMVJointIm, images_and_colours...);
}
