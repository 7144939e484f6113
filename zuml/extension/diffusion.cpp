#include "zuml/extension/diffusion.h"

#include <cmath>
#include <cstddef>
#include <vector>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/detail/framedcopy.h"
#include "zuml/core/detail/mapped.h"
#include "zuml/core/scratch.h"
#include "zuml/core/xqdiagnostics.h"
#include "zuml/core/zumdisplacement.h"
#include "zuml/extension/detail/computedpixel.h"

using zuml_detail::ValueAt;

namespace {

constexpr const char* kName = "ZUMExtendDiffuse";

void RequireTolerance(double tolerance) {
  if (!(tolerance > 0)) throw XQException("%s: Tolerance %g not allowed", kName, tolerance);
}

// All neighbours on the axes on which the region extends.
ZUMImage<ZUMBool> MakeNeighbours(const ZUMRoDRef& rod) {
  ZUMRect box;
  for (const zuml_detail::Axis axis : zuml_detail::kAxes) {
    box.end.*axis = zuml_detail::SizeOf(rod.Rect(), axis) > 1 ? 1 : 0;
    box.begin.*axis = -(box.end.*axis);
  }
  const ZUMImage<ZUMBool> neighbours(box, 1, true);
  neighbours(0) = false;
  return neighbours;
}

// The neighbours as steps; a region of one pixel has none.
ZUMDisplacementArray MakeSteps(const ZUMRaster& raster, const ZUMImage<ZUMBool>& neighbours) {
  ZUMDisplacementArray steps;
  steps.FromEqualPixels(raster, neighbours, true);
  return steps;
}

template <class P>
ZUMImage<P> ToPixels(const ZUMRoDRef& rod, const ZUMImage<ZUMReal>& values) {
  return zuml_detail::MapImages<P>(
      rod, 1, [](double value) { return zuml_detail::ToPixel<P>(value); }, values);
}

/// A hole filled by fronts and relaxed by simultaneous means.
class Diffusion {
 public:
  Diffusion(const ZUMImage<ZUMReal>& values, const ZUMImage<ZUMBool>& mask)
      : neighbours_(MakeNeighbours(values)),
        values_(values),
        state_(zuml_detail::MakeFramed<ZUMByte>(values, 1, neighbours_, kFrame)),
        on_values_(MakeSteps(values_, neighbours_)),
        on_state_(MakeSteps(state_, neighbours_)) {
    ZUMForEachRun(
        values_,
        [this](double* w, const ZUMBool* m, ZUMByte* s, std::ptrdiff_t n) {
          for (std::ptrdiff_t i = 0; i < n; ++i) {
            s[i] = ValueAt(m, i) ? kUnknown : kKnown;
            if (s[i] == kUnknown) unknown_.push_back({{w + i, s + i}, 0});
          }
        },
        values_, mask, state_);
  }

  // Front by front; a front sees earlier ones only.
  void Fill() {
    std::vector<Entry> front, next;
    for (Entry& entry : unknown_) {
      if (HasKnownNeighbour(entry.at)) Take(entry.at, next);
    }
    while (!next.empty()) {
      front.swap(next);
      next.clear();
      for (Entry& entry : front) {
        entry.value = Mean(entry.at);
        ForEachNeighbour(entry.at, [&](Pixel q) {
          if (*q.state == kUnknown) Take(q, next);
        });
      }
      for (const Entry& entry : front) {
        *entry.at.value = entry.value;
        *entry.at.state = kComputed;
      }
    }
  }

  void Relax(double tolerance) {
    double change = 0;
    do {
      change = 0;
      for (Entry& entry : unknown_) {
        entry.value = Mean(entry.at);
        const double d = std::fabs(*entry.at.value - entry.value);
        if (d > change) change = d;
      }
      for (const Entry& entry : unknown_) *entry.at.value = entry.value;
    } while (change > tolerance);
  }

 private:
  enum State : ZUMByte { kUnknown, kQueued, kComputed, kKnown, kFrame };

  struct Pixel {
    double* value;
    ZUMByte* state;
  };
  struct Entry {
    Pixel at;
    double value;  // the next one
  };

  static bool IsKnown(ZUMByte state) { return state == kComputed || state == kKnown; }

  template <class Visit>
  void ForEachNeighbour(Pixel p, const Visit& visit) const {
    const long long* on_values = on_values_.begin();
    for (const long long step : on_state_) visit(Pixel{p.value + *on_values++, p.state + step});
  }

  bool HasKnownNeighbour(Pixel p) const {
    for (const long long step : on_state_) {
      if (p.state[step] == kKnown) return true;
    }
    return false;
  }

  static void Take(Pixel p, std::vector<Entry>& front) {
    *p.state = kQueued;
    front.push_back({p, 0});
  }

  double Mean(Pixel p) const {
    double sum = 0;
    int count = 0;
    const long long* on_values = on_values_.begin();
    for (const long long step : on_state_) {
      if (IsKnown(p.state[step])) {
        sum += p.value[*on_values];
        ++count;
      }
      ++on_values;
    }
    return sum / count;
  }

  const ZUMImage<ZUMBool> neighbours_;
  const ZUMImage<ZUMReal> values_;
  const ZUMImage<ZUMByte> state_;
  const ZUMDisplacementArray on_values_, on_state_;
  std::vector<Entry> unknown_;
};

// Passes in sweep order until none changes a pixel by more than the tolerance.
void RelaxInOrder(const ZUMImage<ZUMReal>& values, const ZUMImage<ZUMBool>& mask,
                  const ZUMImage<ZUMByte>& unusable, const ZUMImage<ZUMReal>& anisotropy,
                  const ZUMImage<ZUMBool>& neighbours, const ZUMRoDRef& rod, double tolerance) {
  const ZUMDisplacementArray on_values = MakeSteps(values, neighbours);
  const ZUMDisplacementArray on_unusable = MakeSteps(unusable, neighbours);
  const long long channel = anisotropy.GetChannelSz();
  std::vector<ZUMByte*> solved;
  double change = 0;
  const auto relax = [&](double* w, ZUMByte* u, const double* weights) {
    double sum = 0, total = 0;
    const long long* step = on_values.begin();
    for (const long long to : on_unusable) {
      if (u[to] == 0) {
        sum += *weights * w[*step];
        total += *weights;
      }
      ++step;
      weights += channel;
    }
    if (!(total > 0)) return;
    const double value = sum / total, d = std::fabs(*w - value);
    if (*u != 0) {
      change = tolerance + 1.0;
      solved.push_back(u);
    } else if (d > change) {
      change = d;
    }
    *w = value;
  };
  for (int pass = 1; pass == 1 || change > tolerance; ++pass) {
    change = 0;
    solved.clear();
    ZUMForEachRun(
        rod,
        [&](double* w, const ZUMBool* m, ZUMByte* u, const double* weights, std::ptrdiff_t n) {
          for (std::ptrdiff_t i = 0; i < n; ++i) {
            if (ValueAt(m, i)) relax(w + i, u + i, weights + i);
          }
        },
        values, mask, unusable, anisotropy.Channel(0));
    for (ZUMByte* u : solved) *u = 0;
    XQDiagnosticF("%d:%g\n", pass, change);
  }
}

}  // namespace

template <ZUMScalarPixel P>
ZUMImage<P> ZUMExtendDiffuse(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask,
                             double tolerance) {
  zuml_detail::RequireOneChannelEach(kName, image, mask);
  RequireTolerance(tolerance);
  const ZUMRoDRef rod = Intersection(image, mask);
  if (rod.EmptyP()) return ZUMImage<P>(rod, 1, nullptr);
  const ZUMImage<ZUMReal> values = zuml_detail::MapImages<ZUMReal>(
      rod, 1, [](P pixel) { return static_cast<double>(pixel); }, image);
  Diffusion diffusion(values, mask);
  diffusion.Fill();
  diffusion.Relax(tolerance);
  return ToPixels<P>(rod, values);
}

template <ZUMScalarPixel P>
ZUMImage<P> ZUMExtendDiffuse(const ZUMImage<P>& image, const ZUMImage<ZUMBool>& mask,
                             double tolerance, const ZUMImage<ZUMReal>& anisotropy) {
  zuml_detail::RequireOneChannelEach(kName, image, mask);
  RequireTolerance(tolerance);
  if (image.RoD() != anisotropy.RoD()) {
    throw XQException("%s: Diferent number of channels %d!=%d", kName, image.GetCSz(),
                      mask.GetCSz());
  }
  const ZUMRoDRef rod = Intersection(Intersection(image, mask), anisotropy);
  if (rod.EmptyP()) return ZUMImage<P>(rod, 1, nullptr);
  const ZUMImage<ZUMBool> neighbours = MakeNeighbours(rod);
  if (anisotropy.GetCSz() != neighbours.NPixels() - 1) {
    throw XQException("%s: Anisotropy don't have %d channels", kName, neighbours.NPixels() - 1);
  }
  const ZUMImage<ZUMReal> values(rod, zuml_detail::FrameOf(neighbours), 1, nullptr);
  zuml_detail::MapRuns(
      rod, [](P pixel) { return static_cast<double>(pixel); }, values, image);
  const ZUMImage<ZUMByte> unusable = zuml_detail::MakeFramed<ZUMByte>(rod, 1, neighbours, 1);
  zuml_detail::MapRuns(
      rod, [](bool unknown) { return static_cast<ZUMByte>(unknown); }, unusable, mask);
  if (anisotropy.GetCSz() > 0) {
    RelaxInOrder(values, mask, unusable, anisotropy, neighbours, rod, tolerance);
  }
  return ToPixels<P>(rod, values);
}

#define ZUML_INSTANTIATE(PIX)                                                                      \
  template ZUML_API ZUMImage<PIX> ZUMExtendDiffuse(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&, \
                                                   double);                                        \
  template ZUML_API ZUMImage<PIX> ZUMExtendDiffuse(const ZUMImage<PIX>&, const ZUMImage<ZUMBool>&, \
                                                   double, const ZUMImage<ZUMReal>&);
ZUML_SCALAR_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE
