/// All operations of the library in one list, each with the kinds of its operands, so that a driver
/// can try every one of them in a place, with an operand or at a size that its own tests leave out.
///
/// An operation joins by a line in operations_<subsystem>.cpp: its pixel types, the kinds of its
/// operands, and the call, in which a, b and c are the operands in this order.
///
///   Add<Grey, Picture<>, Picture<>>(CALL2(ZUMMax(a, b)));
///   Add<Scalar, Picture<>, Element<>>(CALL2(ZUMDilate(a, b)));
#pragma once

#include <concepts>
#include <cstddef>
#include <functional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "zuml/core/xqexception.h"
#include "zuml/core/zumarray.h"
#include "zuml/core/zumimage.h"
#include "zuml/core/zumkernel.h"

namespace zuml_everywhere {

/// What is changed about an operand.
enum class Change {
  kNone,
  kIdentity,   // elements, boxes and numbers of which nothing is left to do
  kNoChannel,  // images without channels
  kNoPixel,    // images of an empty region
  kDefault,    // default images
  kAnyValue,   // pixels at the ends of their type's range, infinities, NaN
  kBothWays,   // boxes, elements and numbers: from -extent to extent
  kLowWay,     // from -extent to 0
  kHighWay,    // from 0 to extent
  kFarLow,     // at -extent only
  kFarHigh     // at extent only
};

struct Setting {
  /// The axis along which the images move to the end of the coordinates; 4 for all of them.
  int move = -1;
  bool high = false;
  Change change = Change::kNone;
  int operand = -1;      ///< the operand that is changed; -1 for all
  int axis = 0;          ///< of the extent; 4 for all
  long long extent = 0;  ///< stops at the ends of 32 bits
};

enum class Kind { kImage, kElement, kBox, kNumber };

/// Makes the operands of one call and keeps its images.
class Tray {
 public:
  explicit Tray(const Setting& setting) : setting_(setting) {}

  const std::vector<Kind>& GetKinds() const { return kinds_; }
  const std::vector<ZUMGenericImage>& GetImages() const { return images_; }
  /// How far the images are from their ordinary place.
  const ZUMBasePoint<long long>& GetShift() const { return shift_; }

  /// An image at the place that the setting tells.
  template <class P>
  ZUMImage<P> MakePicture(bool plane, int csz);
  /// One of a picture's lines along an axis, at 0 on the others.
  template <class P>
  ZUMImage<P> MakeLine(int axis, int csz);
  /// A row along X that no setting moves.
  template <class P>
  ZUMImage<P> MakeTable(int first, int last);
  /// An image around the origin.
  template <class P>
  ZUMImage<P> MakeElement(const ZUMRect& box, int csz);
  ZUMRect MakeWindow();
  ZUMRect MakeMargins();
  /// A box at the place of the pictures.
  ZUMRect MakePlacedBox();
  int MakeNumber(int ordinary, int identity);

 private:
  bool Begin(Kind kind, Change& change);
  ZUMRect Place(const ZUMRect& box);
  ZUMRect Extend(Change change, const ZUMRect& around) const;
  template <class P>
  ZUMImage<P> Fill(const ZUMRect& box, int csz, Change change, bool element);

  Setting setting_;
  std::vector<Kind> kinds_;
  std::vector<ZUMGenericImage> images_;
  ZUMBasePoint<long long> shift_;
};

// The kinds of operands. Pix is the pixel type that an operation is listed with.

struct Pix;
template <class Q, class P>
using Pixel = std::conditional_t<std::same_as<Q, Pix>, P, Q>;

template <class Q = Pix, int kCSz = 2>
struct Picture {
  template <class P>
  static auto Make(Tray& tray) {
    return tray.MakePicture<Pixel<Q, P>>(false, kCSz);
  }
};
template <class Q = Pix, int kCSz = 1>
struct Plane {
  template <class P>
  static auto Make(Tray& tray) {
    return tray.MakePicture<Pixel<Q, P>>(true, kCSz);
  }
};
template <class Q, int kAxis>
struct Line {
  template <class P>
  static auto Make(Tray& tray) {
    return tray.MakeLine<Pixel<Q, P>>(kAxis, 2);
  }
};
template <class Q, int kFirst, int kLast>
struct Table {
  template <class P>
  static auto Make(Tray& tray) {
    return tray.MakeTable<Pixel<Q, P>>(kFirst, kLast);
  }
};
template <class Q = ZUMBool, int kX = 1, int kY = 1, int kZ = 1, int kT = 1, int kCSz = 1>
struct Element {
  template <class P>
  static auto Make(Tray& tray) {
    return tray.MakeElement<Pixel<Q, P>>(ZUMRect(-kX, -kY, 0, 0, kX, kY, kZ, kT), kCSz);
  }
};
template <class Q>
struct Kernel {
  template <class P>
  static auto Make(Tray& tray) {
    return ZUMKernel<Q>(tray.MakeElement<Q>(ZUMRect(-1, -1, 0, 0, 1, 1, 1, 0), 1));
  }
};
template <class Q>
struct LineKernel {
  template <class P>
  static auto Make(Tray& tray) {
    const ZUMImage<Q> kx = tray.MakeElement<Q>(ZUMRect(-1, 0, 0, 0, 1, 0, 0, 0), 1);
    const ZUMImage<Q> ky = tray.MakeElement<Q>(ZUMRect(0, -1, 0, 0, 0, 1, 0, 0), 1);
    return ZUMKernel<Q>(kx, ky, ZUMImage<Q>(), ZUMImage<Q>());
  }
};
struct Window {
  template <class P>
  static ZUMRect Make(Tray& tray) {
    return tray.MakeWindow();
  }
};
struct Margins {
  template <class P>
  static ZUMRect Make(Tray& tray) {
    return tray.MakeMargins();
  }
};
struct PlacedBox {
  template <class P>
  static ZUMRect Make(Tray& tray) {
    return tray.MakePlacedBox();
  }
};
template <int kOrdinary, int kIdentity = 1>
struct Number {
  template <class P>
  static int Make(Tray& tray) {
    return tray.MakeNumber(kOrdinary, kIdentity);
  }
};

/// What a call came to: an image, or anything else as text, or the text of an XQException.
struct Outcome {
  bool thrown = false;
  bool foreign = false;  ///< another exception
  bool has_image = false;
  ZUMGenericImage image;
  std::string text;
};

inline std::string Text(const std::string& value) { return value; }
template <class T>
requires std::is_arithmetic_v<T> std::string Text(T value) { return std::to_string(value); }
inline std::string Text(const ZUMComplex& v) { return Text(v.real()) + "," + Text(v.imag()); }
inline std::string Text(const ZUMBasePoint<int>& p) {
  return Text(p.x) + "," + Text(p.y) + "," + Text(p.z) + "," + Text(p.t);
}
inline std::string Text(const ZUMRect& box) { return Text(box.begin) + " to " + Text(box.end); }
template <class T>
std::string Text(const ZUMArray<T>& values) {
  std::string text;
  for (const T& value : values) text += Text(value) + " ";
  return text;
}

inline void Set(Outcome& outcome, const ZUMGenericImage& image) {
  outcome.has_image = true;
  outcome.image = image;
}
template <class T>
requires(!std::derived_from<T, ZUMGenericImage>) void Set(Outcome& outcome, const T& value) {
  outcome.text = Text(value);
}

/// What the drivers have to know of an operation.
enum : unsigned {
  kStays = 1,     // the result does not move with the images, or not along
  kDepends = 2,   // the result depends on where the images are
  kShares = 4,    // the result shares a raster with an operand, as its doc block says
  kMirrors = 16,  // the result moves the other way, and the least coordinate has no opposite
  kGrows = 8      // the result is as large as a box or a number makes it
};

struct Operation {
  std::string name;
  unsigned traits;
  /// Makes the operands, and calls unless the outcome is null.
  std::function<void(Tray&, Outcome*)> run;
};

inline std::vector<Operation>& Operations() {
  static std::vector<Operation> operations;
  return operations;
}

template <class... P>
struct Types {};
using Discrete = Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong>;
using Integer = Types<ZUMByte, ZUMShort, ZUMLong>;
using Grey = Types<ZUMByte, ZUMShort, ZUMLong, ZUMReal>;
using Numeric = Types<ZUMByte, ZUMShort, ZUMLong, ZUMSReal, ZUMReal>;
using Scalar = Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMReal>;
using Ordered = Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMSReal, ZUMReal>;
using Arithmetic = Types<ZUMByte, ZUMShort, ZUMLong, ZUMReal, ZUMComplex>;
using Algebra = Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMReal, ZUMComplex>;
using Value = Types<ZUMBool, ZUMByte, ZUMShort, ZUMLong, ZUMSReal, ZUMReal, ZUMComplex>;
using Bool = Types<ZUMBool>;
using Byte = Types<ZUMByte>;
using Long = Types<ZUMLong>;
using Real = Types<ZUMReal>;
using Complex = Types<ZUMComplex>;

template <class P, class... Kinds, class F>
void AddOne(const char* name, F call, unsigned traits) {
  const auto run = [call](Tray& tray, Outcome* outcome) {
    // Braces make the operands in their order.
    const std::tuple operands{Kinds::template Make<P>(tray)...};
    if (!outcome) return;
    using Result = decltype(std::apply(call, operands));
    if constexpr (std::is_void_v<Result>) {
      std::apply(call, operands);
    } else {
      Set(*outcome, std::apply(call, operands));
    }
  };
  Operations().push_back({std::string(name) + " of " + ZUMPixelTraits<P>::kName, traits, run});
}

template <class... P, class AddOf>
void ForEachType(Types<P...>, AddOf add) {
  (add(static_cast<P*>(nullptr)), ...);
}

template <class List, class... Kinds, class F>
void Add(const char* name, F call, unsigned traits = 0) {
  ForEachType(List(), [&]<class P>(P*) { AddOne<P, Kinds...>(name, call, traits); });
}

// The text of a call and the call.
#define CALL1(...) #__VA_ARGS__, [](const auto& a) { return __VA_ARGS__; }
#define CALL2(...) #__VA_ARGS__, [](const auto& a, const auto& b) { return __VA_ARGS__; }
#define CALL3(...) \
#__VA_ARGS__, [](const auto& a, const auto& b, const auto& c) { return __VA_ARGS__; }

/// Fills the list before the tests run.
struct Register {
  explicit Register(void (*add)()) { add(); }
};

}  // namespace zuml_everywhere
