/// The pixel-wise choice between two images or numbers by a mask.
#pragma once

#include <type_traits>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// An image with the pixels of `a` where `cond` is true and those of `b` elsewhere. It covers the
/// region common to `cond` and the images among `a` and `b`, and has the channels of those images.
/// A mask of one channel applies to every channel; any other mask has as many channels as the
/// images. Two numbers are chosen between over the region and the channels of `cond`; they have one
/// type, which is the result's: ZUMImIf(mask, 1, 0) is a `long` image, ZUMImIf<ZUMByte>(mask, 1, 0)
/// a byte image.
///
/// Throws XQException "ZUMImIf: Diferent number of channels" if the two images differ in their
/// channels, or else the mask does not fit them. Tasks: CTaskImIfII, CTaskImIfIN, CTaskImIfNI,
/// CTaskImIfNN.
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMImIf(const ZUMImage<ZUMBool>& cond, const ZUMImage<P>& a,
                                           const ZUMImage<P>& b);
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMImIf(const ZUMImage<ZUMBool>& cond, const ZUMImage<P>& a,
                                           std::type_identity_t<P> b);
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMImIf(const ZUMImage<ZUMBool>& cond, std::type_identity_t<P> a,
                                           const ZUMImage<P>& b);
template <ZUMAlgebraPixel P>
[[nodiscard]] ZUML_API ZUMImage<P> ZUMImIf(const ZUMImage<ZUMBool>& cond, P a, P b);
