// What must not compile in a program that includes the whole library.

#include <type_traits>

#include "zuml/zuml.h"

namespace {

// Pointer pixels are no numbers.
static_assert(!std::is_convertible_v<ZUMImage<ZUMPointer>, ZUMImage<ZUMLong>>);
static_assert(!std::is_convertible_v<ZUMImage<ZUMLong>, ZUMImage<ZUMPointer>>);

// Data of another type is neither data nor, by way of bool, a value.
template <class P, class Data>
constexpr bool BuiltFrom = std::is_constructible_v<ZUMImage<P>, ZUMRoDRef, int, Data> ||
                           std::is_constructible_v<ZUMImage<P>, ZUMRoDRef, ZUMRect, int, Data> ||
                           requires(ZUMImage<P> image, Data data) {
  image.SetPixels(data);
};
static_assert(!BuiltFrom<ZUMBool, ZUMByte*> && !BuiltFrom<ZUMReal, const ZUMSReal*>);
static_assert(BuiltFrom<ZUMBool, const bool*> && BuiltFrom<ZUMPointer, const ZUMPointer*>);

}  // namespace
