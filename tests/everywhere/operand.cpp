#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "tests/everywhere/operation.h"
#include "tests/support/testimages.h"

namespace zuml_everywhere {
namespace {

constexpr long long kLeast = std::numeric_limits<int>::min();
constexpr long long kGreatest = std::numeric_limits<int>::max();
/// The longest element that is made in full.
constexpr long long kLongest = 100000;

int Clip(long long x) { return static_cast<int>(std::clamp(x, kLeast, kGreatest)); }

template <class P>
P MakePixel(zuml_test::Random& random) {
  if constexpr (std::same_as<P, bool>) return random.Int(0, 3) != 0;
  if constexpr (std::same_as<P, ZUMComplex>) {
    return {random.Int(-4, 20) / 4.0, random.Int(-4, 20) / 4.0};
  }
  if constexpr (std::same_as<P, ZUMByte>) return static_cast<P>(random.Int(0, 6));
  if constexpr (std::integral<P>) return static_cast<P>(random.Int(-1, 5));
  if constexpr (std::floating_point<P>) return static_cast<P>(random.Int(-4, 20)) / 4;
}

template <class P>
P MakeAnyPixel(zuml_test::Random& random) {
  using Limits = std::numeric_limits<P>;
  if constexpr (std::same_as<P, ZUMComplex>) {
    const double re = MakeAnyPixel<double>(random);
    return {re, MakeAnyPixel<double>(random)};
  } else if constexpr (std::floating_point<P>) {
    const P values[] = {
        Limits::lowest(),    Limits::max(),       Limits::denorm_min(),         Limits::infinity(),
        -Limits::infinity(), Limits::quiet_NaN(), static_cast<P>(2147483648.0), 1};
    return values[random.Int(0, 7)];
  } else {
    const P values[] = {Limits::min(), Limits::max(), 0, 1, static_cast<P>(-1)};
    return values[random.Int(0, 4)];
  }
}

}  // namespace

bool Tray::Begin(Kind kind, Change& change) {
  const int number = static_cast<int>(kinds_.size());
  kinds_.push_back(kind);
  const bool changes = setting_.operand < 0 || setting_.operand == number;
  change = changes ? setting_.change : Change::kNone;
  return change >= Change::kBothWays;
}

ZUMRect Tray::Place(const ZUMRect& box) {
  const auto shift = [this](int axis, int begin, int end, long long& to) {
    if (setting_.move != axis && setting_.move != 4) return;
    to = setting_.high ? kGreatest - end : kLeast - begin;
  };
  shift(0, box.begin.x, box.end.x, shift_.x);
  shift(1, box.begin.y, box.end.y, shift_.y);
  shift(2, box.begin.z, box.end.z, shift_.z);
  shift(3, box.begin.t, box.end.t, shift_.t);
  return {Clip(box.begin.x + shift_.x), Clip(box.begin.y + shift_.y), Clip(box.begin.z + shift_.z),
          Clip(box.begin.t + shift_.t), Clip(box.end.x + shift_.x),   Clip(box.end.y + shift_.y),
          Clip(box.end.z + shift_.z),   Clip(box.end.t + shift_.t)};
}

ZUMRect Tray::Extend(Change change, const ZUMRect& around) const {
  const int n = Clip(setting_.extent), m = Clip(-setting_.extent);
  const bool low = change != Change::kHighWay, high = change != Change::kLowWay;
  const auto extend = [&](int axis, int& begin, int& end) {
    if (setting_.axis != axis && setting_.axis != 4) return;
    if (low) begin = change == Change::kFarHigh ? n : m;
    if (high) end = change == Change::kFarLow ? m : n;
  };
  ZUMRect box = around;
  extend(0, box.begin.x, box.end.x);
  extend(1, box.begin.y, box.end.y);
  extend(2, box.begin.z, box.end.z);
  extend(3, box.begin.t, box.end.t);
  return box;
}

template <class P>
ZUMImage<P> Tray::Fill(const ZUMRect& box, int csz, Change change, bool element) {
  const auto fill = [&]() -> ZUMImage<P> {
    if (change == Change::kDefault) return ZUMImage<P>();
    if (change == Change::kNoPixel) return ZUMImage<P>(ZUMRect(0, 0, 0, 0, -1, 0, 0, 0), csz, P(1));
    if (change == Change::kNoChannel) return ZUMImage<P>(box, 0, P(1));
    const ZUMImage<P> image(box, csz, P(1));
    if (change >= Change::kBothWays || change == Change::kIdentity) return image;
    zuml_test::Random random(kinds_.size());
    auto* const pixels = static_cast<P*>(image.GetData());
    for (long long i = 0; i < image.GetRasterSz(); ++i) {
      pixels[i] = change == Change::kAnyValue ? MakeAnyPixel<P>(random) : MakePixel<P>(random);
    }
    if (element && change == Change::kNone) image(0, 0) = P(1);
    return image;
  };
  images_.push_back(fill());
  return images_.back();
}

template <class P>
ZUMImage<P> Tray::MakePicture(bool plane, int csz) {
  Change change;
  Begin(Kind::kImage, change);
  // No picture begins at 0, and no two sides of a volume are equal. Large elements meet small ones.
  ZUMRect box(1, 2, 3, 4, 7, 6, 5, 5);
  if (setting_.extent != 0) box.end = {3, 3, 3, 4};
  if (plane) box.begin.z = box.end.z = box.begin.t = box.end.t = 0;
  if (change >= Change::kBothWays || change == Change::kIdentity) change = Change::kNone;
  return Fill<P>(Place(box), csz, change, false);
}

template <class P>
ZUMImage<P> Tray::MakeLine(int axis, int csz) {
  Change change;
  if (Begin(Kind::kImage, change) || change == Change::kIdentity) change = Change::kNone;
  const ZUMRect whole = Place({1, 2, 3, 4, 7, 6, 5, 5});
  ZUMRect box(0, 0, 0, 0, 0, 0, 0, 0);
  if (axis == 0) box.begin.x = whole.begin.x, box.end.x = whole.end.x;
  if (axis == 1) box.begin.y = whole.begin.y, box.end.y = whole.end.y;
  if (axis == 2) box.begin.z = whole.begin.z, box.end.z = whole.end.z;
  if (axis == 3) box.begin.t = whole.begin.t, box.end.t = whole.end.t;
  return Fill<P>(box, csz, change, false);
}

template <class P>
ZUMImage<P> Tray::MakeTable(int first, int last) {
  Change change;
  if (Begin(Kind::kImage, change)) change = Change::kNone;
  return Fill<P>(ZUMRect(first, 0, 0, 0, last, 0, 0, 0), 1, change, false);
}

template <class P>
ZUMImage<P> Tray::MakeElement(const ZUMRect& box, int csz) {
  Change change;
  const ZUMRect origin(0, 0, 0, 0, 0, 0, 0, 0);
  if (!Begin(Kind::kElement, change)) {
    return Fill<P>(change == Change::kIdentity ? origin : box, csz, change, true);
  }
  if (change < Change::kFarLow && (setting_.extent > kLongest || setting_.axis == 4)) {
    change = Change::kFarHigh;
  }
  return Fill<P>(Extend(change, origin), csz, change, true);
}

ZUMRect Tray::MakeWindow() {
  Change change;
  const ZUMRect origin(0, 0, 0, 0, 0, 0, 0, 0);
  if (Begin(Kind::kBox, change)) return Extend(change, origin);
  return change == Change::kIdentity ? origin : ZUMRect(-1, -2, 0, 0, 1, 0, 1, 1);
}

ZUMRect Tray::MakeMargins() {
  Change change;
  const ZUMRect none(0, 0, 0, 0, 0, 0, 0, 0);
  if (Begin(Kind::kBox, change)) {
    ZUMRect box = Extend(change, none);
    for (ZUMBasePoint<int>* corner : {&box.begin, &box.end}) {
      for (int* side : {&corner->x, &corner->y, &corner->z, &corner->t}) {
        *side = Clip(std::abs(static_cast<long long>(*side)));
      }
    }
    return box;
  }
  return change == Change::kIdentity ? none : ZUMRect(1, 0, 1, 0, 0, 2, 0, 1);
}

ZUMRect Tray::MakePlacedBox() {
  Change change;
  if (Begin(Kind::kBox, change)) return Extend(change, {1, 2, 3, 4, 3, 3, 3, 4});
  if (change == Change::kIdentity) return Place({1, 2, 3, 4, 7, 6, 5, 5});
  const ZUMRect box = Place({1, 2, 3, 4, 7, 6, 5, 5});
  return {box.begin.x + 1, box.begin.y,   box.begin.z + 1, box.begin.t,
          box.end.x,       box.end.y - 1, box.end.z,       box.end.t};
}

int Tray::MakeNumber(int ordinary, int identity) {
  Change change;
  if (Begin(Kind::kNumber, change)) {
    const bool low = change == Change::kLowWay || change == Change::kFarLow;
    return Clip(low ? -setting_.extent : setting_.extent);
  }
  return change == Change::kIdentity ? identity : ordinary;
}

#define ZUML_INSTANTIATE(P)                          \
  template ZUMImage<P> Tray::MakePicture(bool, int); \
  template ZUMImage<P> Tray::MakeLine(int, int);     \
  template ZUMImage<P> Tray::MakeTable(int, int);    \
  template ZUMImage<P> Tray::MakeElement(const ZUMRect&, int);
ZUML_VALUE_TYPES(ZUML_INSTANTIATE)
#undef ZUML_INSTANTIATE

}  // namespace zuml_everywhere
