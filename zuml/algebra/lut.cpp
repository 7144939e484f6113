#include "zuml/algebra/lut.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/mapped.h"
#include "zuml/core/taskframe.h"
#include "zuml/core/xqexception.h"

using zuml_detail::Stored;
using zuml_detail::ValueAt;

namespace {

void RequireRectangle(const char* operation, const ZUMRegionOfDefinition& table) {
  if (!zuml_detail::IsBox(table)) {
    throw XQException("%s: Only LUTs with rectangular RoD are allowed", operation);
  }
}

// The table may extend along as many axes as the source has channels.
void RequireTableOfAxes(const char* operation, const ZUMRoDRef& table, int source_channels) {
  static constexpr const char* kWanted[] = {"1D lut is allowed with monochrome",
                                            "2D lut is allowed with two channels",
                                            "3D lut is allowed with three channels"};
  if (source_channels < 1 || source_channels > 3) {
    throw XQException("%s: Number of channels of the imagen not allowed", operation);
  }
  const ZUMRect box = table.Rect();
  const bool flat[] = {box.begin.y == 0 && box.end.y == 0, box.begin.z == 0 && box.end.z == 0,
                       box.begin.t == 0 && box.end.t == 0};
  for (int axis = source_channels - 1; axis < 3; ++axis) {
    if (!flat[axis]) {
      throw XQException("%s: Only %s image", operation, kWanted[source_channels - 1]);
    }
  }
}

// What the loops need of a table. They take it by value, so that the compiler knows that the pixels
// they write do not change it. Its pixels are only copied, so bool ones go as bytes.
template <class Q>
struct Table {
  const Stored<Q>* pixels;  // at the table's begin
  const Stored<Q>* at_0;    // on the same line, where X is 0
  std::ptrdiff_t channel;   // steps in pixels
  std::ptrdiff_t step[3];   // that of X is 1
  int begin[3];
  unsigned size[3];
  int csz;

  explicit Table(const ZUMImage<Q>& lut)
      : pixels(static_cast<const Stored<Q>*>(lut.PixelAddress(lut.Begin(), 0))),
        at_0(pixels - lut.BeginX()),
        channel(lut.GetChannelSz()),
        step{1, lut.GetLineSz(), lut.GetPlaneSz()},
        begin{lut.BeginX(), lut.BeginY(), lut.BeginZ()},
        size{static_cast<unsigned>(lut.RoDXSz()), static_cast<unsigned>(lut.RoDYSz()),
             static_cast<unsigned>(lut.RoDZSz())},
        csz(lut.GetCSz()) {}
};

// How far pixel i of K channels lies from the table's begin.
template <int K, class Q, class P>
std::ptrdiff_t Locate(const Table<Q>& table, const P* x, std::ptrdiff_t x_channel,
                      std::ptrdiff_t i) {
  std::ptrdiff_t offset = std::ptrdiff_t{ValueAt(x, i)} - table.begin[0];
  for (int k = 1; k < K; ++k) {
    offset += (std::ptrdiff_t{ValueAt(x + k * x_channel, i)} - table.begin[k]) * table.step[k];
  }
  return offset;
}

// Whether pixel i of K channels lies in the table.
template <int K, class Q, class P>
bool IsInTable(const Table<Q>& table, const P* x, std::ptrdiff_t x_channel, std::ptrdiff_t i) {
  bool in = true;
  for (int k = 0; k < K; ++k) {
    // One unsigned comparison tests both ends.
    const ZUMLong value = ValueAt(x + k * x_channel, i);
    in &= static_cast<unsigned>(value) - static_cast<unsigned>(table.begin[k]) < table.size[k];
  }
  return in;
}

// The lookups of one run, a result channel after the other. Inlined into the sweep they would get
// too few registers.

template <int K, class Q, class P>
[[gnu::noinline]] void LookUpUnsafe(const Table<Q> table, const P* x, std::ptrdiff_t x_channel,
                                    Stored<Q>* r, std::ptrdiff_t r_channel, std::ptrdiff_t n) {
  for (int c = 0; c < table.csz; ++c) {
    const Stored<Q>* pixels = table.pixels + c * table.channel;
    const Stored<Q>* at_0 = table.at_0 + c * table.channel;
    Stored<Q>* rc = r + c * r_channel;
    std::ptrdiff_t i = 0;
    if constexpr (std::same_as<P, ZUMByte> && K == 1) {
      // Eight indices come with one load, the first in the low byte.
      for (; i + 8 <= n; i += 8) {
        std::uint64_t word;
        std::memcpy(&word, x + i, 8);
        for (int k = 0; k < 8; ++k) rc[i + k] = at_0[(word >> 8 * k) & 0xFF];
      }
    }
    for (; i < n; ++i) {
      rc[i] = K == 1 ? at_0[ValueAt(x, i)] : pixels[Locate<K>(table, x, x_channel, i)];
    }
  }
}

template <int K, class Q, class P>
[[gnu::noinline]] void LookUpTested(const Table<Q> table, const P* x, std::ptrdiff_t x_channel,
                                    Stored<Q>* r, std::ptrdiff_t r_channel, std::ptrdiff_t n,
                                    Stored<Q> missing) {
  for (int c = 0; c < table.csz; ++c) {
    const Stored<Q>* pixels = table.pixels + c * table.channel;
    Stored<Q>* rc = r + c * r_channel;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      // A pixel outside reads the first entry for nothing; that is cheaper than a jump.
      const bool in = IsInTable<K>(table, x, x_channel, i);
      const Stored<Q> value = pixels[in ? Locate<K>(table, x, x_channel, i) : 0];
      rc[i] = in ? value : missing;
    }
  }
}

// Calls f(x, r, n) with the runs of the source's and the result's first channels.
template <class Q, class P, class F>
void ForEachSourceRun(const ZUMRoDRef& rod, const ZUMImage<P>& image, const ZUMImage<Q>& result,
                      F f) {
  ZUMForEachRun(
      rod, [f](const P* x, Q* r, std::ptrdiff_t n) { f(x, reinterpret_cast<Stored<Q>*>(r), n); },
      image.Channel(0), result);
}

template <class Q, class P>
class UnsafeLutTask : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<Q>* result;
  const ZUMImage<P>* image;
  const Table<Q>* table;

  void Run() override {
    ForEachSourceRun(part, *image, *result,
                     [t = *table, channel = std::ptrdiff_t{result->GetChannelSz()}](
                         const P* x, Stored<Q>* r, std::ptrdiff_t n) {
                       LookUpUnsafe<1>(t, x, 0, r, channel, n);
                     });
  }
};

template <class Task, class Q, class P>
ZUMImage<Q> RunUnsafeLut1(const ZUMImage<P>& image, const Table<Q>& table) {
  return ZUMRunTasks<Task, Q>(image, table.csz, [&](Task& task) {
    task.image = &image;
    task.table = &table;
  });
}

template <int K, class Q, class P>
ZUMImage<Q> RunUnsafeLut(const ZUMImage<P>& image, const Table<Q>& table) {
  const ZUMImage<Q> result(image, table.csz, nullptr);
  ForEachSourceRun(image, image, result,
                   [t = table, x_channel = std::ptrdiff_t{image.GetChannelSz()},
                    r_channel = std::ptrdiff_t{result.GetChannelSz()}](const P* x, Stored<Q>* r,
                                                                       std::ptrdiff_t n) {
                     LookUpUnsafe<K>(t, x, x_channel, r, r_channel, n);
                   });
  return result;
}

template <int K, class Q, class P>
ZUMImage<Q> RunLut(const ZUMImage<P>& image, const Table<Q>& table, Q missing) {
  const ZUMImage<Q> result(image, table.csz, nullptr);
  ForEachSourceRun(
      image, image, result,
      [t = table, x_channel = std::ptrdiff_t{image.GetChannelSz()},
       r_channel = std::ptrdiff_t{result.GetChannelSz()},
       missing = static_cast<Stored<Q>>(missing)](const P* x, Stored<Q>* r, std::ptrdiff_t n) {
        LookUpTested<K>(t, x, x_channel, r, r_channel, n, missing);
      });
  return result;
}

// The tested lookup of a byte needs no test once the table has an entry for each of its values.
template <class Q>
ZUMImage<Q> RunByteLut(const ZUMImage<ZUMByte>& image, const ZUMImage<Q>& lut, Q missing) {
  const ZUMImage<Q> full(ZUMRect(0, 0, 0, 0, 255, 0, 0, 0), lut.GetCSz(), missing);
  full.Cut(lut).SetPixels(lut);
  return RunUnsafeLut<1>(image, Table<Q>(full));
}

}  // namespace

template <class Q, class P>
class CTaskUnsafeLut11 final : public UnsafeLutTask<Q, P> {};
template <class Q, class P>
class CTaskUnsafeLut1C final : public UnsafeLutTask<Q, P> {};

template <ZUMAlgebraPixel Q, ZUMDiscretePixel P>
ZUMImage<Q> ZUMUnsafeLut(const ZUMImage<P>& image, const ZUMImage<Q>& lut) {
  RequireRectangle("ZUMUnsafeLut", lut.RoD());
  RequireTableOfAxes("ZUMUnsafeLut", lut, image.GetCSz());
  if (lut.GetCSz() == 0) return ZUMImage<Q>(image, 0, nullptr);
  const Table<Q> table(lut);
  switch (image.GetCSz()) {
    case 1:
      return table.csz == 1 ? RunUnsafeLut1<CTaskUnsafeLut11<Q, P>>(image, table)
                            : RunUnsafeLut1<CTaskUnsafeLut1C<Q, P>>(image, table);
    case 2:
      return RunUnsafeLut<2>(image, table);
    default:
      return RunUnsafeLut<3>(image, table);
  }
}

template <ZUMAlgebraPixel Q, ZUMDiscretePixel P>
ZUMImage<Q> ZUMLut(const ZUMImage<P>& image, const ZUMImage<Q>& lut,
                   std::type_identity_t<Q> defaultValue) {
  const int channels = image.GetCSz();
  RequireRectangle("ZUMLut", lut.RoD());
  if (lut.EmptyP() && channels >= 1 && channels <= 3) {
    return ZUMImage<Q>(image, lut.GetCSz() != 1 ? lut.GetCSz() : channels, defaultValue);
  }
  RequireTableOfAxes("ZUMLut", lut, channels);
  if (lut.GetCSz() == 0) return ZUMImage<Q>(image, 0, nullptr);
  if constexpr (std::same_as<P, ZUMByte>) {
    if (channels == 1) return RunByteLut(image, lut, defaultValue);
  }
  const Table<Q> table(lut);
  switch (channels) {
    case 1:
      return RunLut<1>(image, table, defaultValue);
    case 2:
      return RunLut<2>(image, table, defaultValue);
    default:
      return RunLut<3>(image, table, defaultValue);
  }
}

#define ZUML_INSTANTIATE_PAIR(Q, P)                                                         \
  template ZUML_API ZUMImage<Q> ZUMUnsafeLut<Q, P>(const ZUMImage<P>&, const ZUMImage<Q>&); \
  template ZUML_API ZUMImage<Q> ZUMLut<Q, P>(const ZUMImage<P>&, const ZUMImage<Q>&, Q);
#define ZUML_INSTANTIATE(Q)          \
  ZUML_INSTANTIATE_PAIR(Q, ZUMBool)  \
  ZUML_INSTANTIATE_PAIR(Q, ZUMByte)  \
  ZUML_INSTANTIATE_PAIR(Q, ZUMShort) \
  ZUML_INSTANTIATE_PAIR(Q, ZUMLong)
ZUML_ALGEBRA_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
#undef ZUML_INSTANTIATE_PAIR
