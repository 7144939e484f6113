/// Pairs of pixel types of operations that widen.
#pragma once

#include <concepts>
#include <type_traits>

#include "zuml/core/pixeltypes.h"

/// What a pixel type widens to: long from the integer types and bool, double from double.
template <ZUMScalarPixel InT>
using ZUMWidened = std::conditional_t<ZUMDiscretePixel<InT>, ZUMLong, ZUMReal>;

template <class InT, class OutT>
concept ZUMWidensTo = ZUMScalarPixel<InT> && std::same_as<OutT, ZUMWidened<InT>>;

/// Gives a form without named types its first parameter, so that f<OutT>(image) is not this form.
template <class T>
concept ZUMNotNamed = std::same_as<T, void>;
