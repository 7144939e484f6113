/// Pairs of pixel types of operations that widen.
#pragma once

#include <concepts>

#include "zuml/core/pixeltypes.h"

/// Long for the integer types and bool, double for double.
template <class InT, class OutT>
concept ZUMWidensTo = (ZUMDiscretePixel<InT> && std::same_as<OutT, ZUMLong>) ||
                      (std::same_as<InT, ZUMReal> && std::same_as<OutT, ZUMReal>);
