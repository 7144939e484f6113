/// What a pixel is in memory.
#pragma once

#include <concepts>
#include <type_traits>

#include "zuml/core/pixeltypes.h"

namespace zuml_detail {

/// The type in which a pixel is read from memory. Bool pixels are bytes, in memory that an
/// application wrapped also other ones than 0 and 1; what is stored is 0 or 1.
template <class P>
using Stored = std::conditional_t<std::same_as<P, ZUMBool>, ZUMByte, P>;

}  // namespace zuml_detail
