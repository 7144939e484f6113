/// Flags beside pixels, in loops that compare.
#pragma once

#include <cstdint>
#include <type_traits>

namespace zuml_detail {

/// An unsigned integer as wide as a pixel, so that a loop over both keeps to one width of vectors.
template <class P>
using FlagBeside = std::conditional_t<
    sizeof(P) == 1, std::uint8_t,
    std::conditional_t<sizeof(P) == 2, std::uint16_t,
                       std::conditional_t<sizeof(P) == 4, std::uint32_t, std::uint64_t>>>;

}  // namespace zuml_detail
