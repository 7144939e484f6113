// What the core offers to a program that includes the whole library: that each member and each
// instance exists, compiles and links, and that what must not compile does not.

#include <gtest/gtest.h>

#include <type_traits>

#include "zuml/zuml.h"

namespace {

// An overload for value pixels is preferred to one for all.
constexpr bool IsValue(ZUMAnyPixel auto) { return false; }
constexpr bool IsValue(ZUMValuePixel auto) { return true; }
static_assert(IsValue(ZUMComplex()) && !IsValue(ZUMPointer()));
static_assert(!ZUMAnyPixel<long long> && !ZUMAnyPixel<char> && !ZUMAnyPixel<int*>);

// Regions, blocks and sweeps are not copied.
template <class T>
constexpr bool kCopies = std::is_copy_constructible_v<T> || std::is_copy_assignable_v<T>;
static_assert(!kCopies<ZUMRegionOfDefinition> && !kCopies<ZUMSimpleRaster>);
static_assert(!kCopies<ZUMGenericSweep1> && !kCopies<ZUMGenericInvSweep4> && kCopies<ZUMRoDRect>);

// A sweep takes as many rasters as its name says, and tells no more starts than that.
static_assert(std::is_constructible_v<ZUMGenericSweep2, ZUMRoDRef, ZUMRaster, ZUMRaster>);
static_assert(!std::is_constructible_v<ZUMGenericSweep2, ZUMRoDRef, ZUMRaster>);
template <class S>
concept TellsStart3 = requires(const S& sweep) {
  sweep.GetStart3();
};
static_assert(TellsStart3<ZUMGenericSweep3> && !TellsStart3<ZUMGenericSweep2>);

// Pointer pixels are no numbers.
template <class P>
using Image = ZUMImage<P>;
static_assert(!std::is_convertible_v<Image<ZUMPointer>, Image<ZUMLong>>);
static_assert(!std::is_convertible_v<Image<ZUMLong>, Image<ZUMPointer>>);
static_assert(std::is_convertible_v<ZUMGenericImage, Image<ZUMPointer>>);
template <class P>
concept HasVeLoMPixels = requires(Image<P> i) {
  VLMSetPixel<P>(P(), i, 0, 0, 0, 0, VLMInP(i, 0, 0, 0, 0));
};
static_assert(HasVeLoMPixels<ZUMSReal> && !HasVeLoMPixels<ZUMPointer>);

// Data of another type is neither data nor, by way of bool, a value; nor is a null pointer a value.
template <class P, class Data>
constexpr bool BuiltFrom = std::is_constructible_v<Image<P>, ZUMRoDRef, int, Data> ||
                           std::is_constructible_v<Image<P>, ZUMRect, int, Data> ||
                           std::is_constructible_v<Image<P>, ZUMRoDRef, ZUMRect, int, Data> ||
                           requires(Image<P> image, Data data) {
  image.SetPixels(data);
};
static_assert(!BuiltFrom<ZUMBool, ZUMByte*> && !BuiltFrom<ZUMBool, void*>);
static_assert(!BuiltFrom<ZUMByte, const char*> && !BuiltFrom<ZUMReal, const ZUMSReal*>);
static_assert(BuiltFrom<ZUMBool, const bool*> && BuiltFrom<ZUMByte, ZUMByte*>);
static_assert(BuiltFrom<ZUMPointer, ZUMPointer*> && BuiltFrom<ZUMPointer, const ZUMPointer*>);

// The sweepers by their names.
template <class Abstract, class Concrete>
constexpr bool Makes = std::is_base_of_v<Abstract, Concrete>&& std::is_abstract_v<Abstract>;
static_assert(Makes<ZUMSweeper5, ZUMSweeperRect5> && Makes<ZUMSweeperY4, ZUMSweeperRectY4>);
static_assert(Makes<ZUMSweeperCoords4, ZUMSweeperCoordsRect4>);
static_assert(Makes<ZUMInvSweeper4, ZUMInvSweeperRect4>);
static_assert(Makes<ZUMInvSweeperCoords4, ZUMInvSweeperCoordsRect4>);
static_assert(Makes<ZUMContinuousSweeper2, ZUMContinuousSweeperRect2>);

TEST(Offer, ImagesThatStandForNoImage) {
  EXPECT_EQ(ZUMNullImageBool().GetType(), ZUMBoolPixel);
  EXPECT_EQ(ZUMNullImageByte().GetType(), ZUMBytePixel);
  EXPECT_EQ(ZUMNullImageShort().GetType(), ZUMShortPixel);
  EXPECT_EQ(ZUMNullImageLong().GetType(), ZUMLongPixel);
  EXPECT_EQ(ZUMNullImageSReal().GetType(), ZUMSRealPixel);
  EXPECT_EQ(ZUMNullImageReal().GetType(), ZUMRealPixel);
  EXPECT_EQ(ZUMNullImageComplex().GetType(), ZUMComplexPixel);
  EXPECT_EQ(ZUMNullImagePointer().NPixels(), 0);
}

}  // namespace
