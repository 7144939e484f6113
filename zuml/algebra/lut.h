/// Lookup tables. A table is an image whose X, Y and Z axes are its indices: the pixel of a source
/// of one channel is an X coordinate in the table, the pixels of two channels are X and Y, those of
/// three X, Y and Z; the axes that are left over hold the single coordinate 0. The table's region
/// says where its indices begin, below 0 as well. The table's channels are the result's, so a
/// lookup can give a grey image its colours.
///
/// The result covers the source's region. Both forms refuse, with their own name before the colon:
/// a table whose region is not a box, "ZUMLut: Only LUTs with rectangular RoD are allowed"; a table
/// with too many axes, "ZUMLut: Only 1D lut is allowed with monochrome image", "ZUMLut: Only 2D lut
/// is allowed with two channels image", "ZUMLut: Only 3D lut is allowed with three channels image";
/// a source of no channel or of more than three, "ZUMLut: Number of channels of the imagen not
/// allowed".
#pragma once

#include <type_traits>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// The lookup where every index lies inside the table: the caller sees to it, and another index
/// reads memory that is not the table's. One channel runs with tasks, CTaskUnsafeLut11 and, for
/// tables of several channels, CTaskUnsafeLut1C; two and three run on the calling thread.
template <ZUMAlgebraPixel Q, ZUMDiscretePixel P>
[[nodiscard]] ZUML_API ZUMImage<Q> ZUMUnsafeLut(const ZUMImage<P>& image, const ZUMImage<Q>& lut);

/// The lookup that tests every index: a pixel outside the table takes the default value in all
/// channels. With an empty table of one channel, the result has the source's channels, all default;
/// the table's axes are then not tested. Runs on the calling thread.
template <ZUMAlgebraPixel Q, ZUMDiscretePixel P>
[[nodiscard]] ZUML_API ZUMImage<Q> ZUMLut(const ZUMImage<P>& image, const ZUMImage<Q>& lut,
                                          std::type_identity_t<Q> defaultValue);
