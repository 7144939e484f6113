/// All operations of the library in one list, each with the kinds of its operands, so that a driver
/// can try every one of them in a place, with an operand or at a size that its own tests leave out.
///
/// An operation joins by a line in operations_<subsystem>.cpp: its pixel types, the kinds of its
/// operands, and the call, in which a, b and c are the operands in this order.
///
///   ADD2(kMoves, (Grey, Picture<>, Picture<>), ZUMMax(a, b), ZUMMin(a, b));
///   ADD2(kMoves, (Scalar, Picture<>, Element<>), ZUMDilate(a, b));
#pragma once

#include <concepts>
#include <cstddef>
#include <functional>
#include <map>
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

#define ZUML_OPERAND(...)          \
  {                                \
    template <class P>             \
    static auto Make(Tray& tray) { \
      return __VA_ARGS__;          \
    }                              \
  }
template <class Q = Pix, int kCSz = 2>
struct Picture ZUML_OPERAND(tray.MakePicture<Pixel<Q, P>>(false, kCSz));
template <class Q = Pix, int kCSz = 1>
struct Plane ZUML_OPERAND(tray.MakePicture<Pixel<Q, P>>(true, kCSz));
template <class Q, int kAxis>
struct Line ZUML_OPERAND(tray.MakeLine<Pixel<Q, P>>(kAxis, 2));
template <class Q, int kFirst, int kLast>
struct Table ZUML_OPERAND(tray.MakeTable<Pixel<Q, P>>(kFirst, kLast));
template <class Q = ZUMBool, int kX = 1, int kY = 1, int kZ = 1, int kT = 1, int kCSz = 1>
struct Element ZUML_OPERAND(tray.MakeElement<Pixel<Q, P>>(ZUMRect(-kX, -kY, 0, 0, kX, kY, kZ, kT),
                                                          kCSz));
template <class Q>
struct Kernel ZUML_OPERAND(ZUMKernel<Q>(Element<Q>::template Make<P>(tray)));
template <class Q>
struct LineKernel ZUML_OPERAND(ZUMKernel<Q>{Element<Q, 1, 0, 0, 0>::template Make<P>(tray),
                                            Element<Q, 0, 1, 0, 0>::template Make<P>(tray),
                                            ZUMImage<Q>(), ZUMImage<Q>()});
struct Window ZUML_OPERAND(tray.MakeWindow());
struct Margins ZUML_OPERAND(tray.MakeMargins());
struct PlacedBox ZUML_OPERAND(tray.MakePlacedBox());
template <int kOrdinary, int kIdentity = 1>
struct Number ZUML_OPERAND(tray.MakeNumber(kOrdinary, kIdentity));
#undef ZUML_OPERAND

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
  kMoves = 0,    // nothing: the result moves with the images
  kStays = 1,    // the result does not move with the images, or not along
  kMirrors = 2,  // it moves the other way, where the least coordinate has no opposite
  kDepends = 4,  // it depends on where the images are
  kShares = 8,   // it shares a raster with an operand, as its doc block says
  kFramed = 16,  // its raster keeps margins that the computation needed
  kGrows = 32    // it is as large as a box or a number makes it
};

struct Operation {
  std::string name;
  unsigned traits;
  /// Makes the operands, and calls unless the outcome is null.
  std::function<void(Tray&, Outcome*)> run;
};

/// The operations of each subsystem, filled before main.
inline std::map<std::string, std::vector<Operation>>& Operations() {
  static std::map<std::string, std::vector<Operation>> operations;
  return operations;
}

/// Adds operations to the list of a subsystem.
class Register {
 public:
  Register(const char* subsystem, void (*add)()) {
    list_ = &Operations()[subsystem];
    add();
  }
  static void Put(const Operation& operation) { list_->push_back(operation); }

 private:
  inline static std::vector<Operation>* list_ = nullptr;
};

/// Adds a call for each type of the list.
template <class... P>
struct Types {
  template <class... Kinds, class F>
  static void Add(unsigned traits, const char* name, F call) {
    (AddOne<P, Kinds...>(traits, name, call), ...);
  }

 private:
  template <class Q, class... Kinds, class F>
  static void AddOne(unsigned traits, const char* name, F call) {
    const auto run = [call](Tray& tray, Outcome* outcome) {
      // Braces make the operands in their order.
      const std::tuple operands{Kinds::template Make<Q>(tray)...};
      if (!outcome) return;
      if constexpr (std::is_void_v<decltype(std::apply(call, operands))>) {
        std::apply(call, operands);
      } else {
        Set(*outcome, std::apply(call, operands));
      }
    };
    Register::Put({std::string(name) + " of " + ZUMPixelTraits<Q>::kName, traits, run});
  }
};
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

template <class List, class... Kinds, class F>
void Add(unsigned traits, const char* name, F call) {
  List::template Add<Kinds...>(traits, name, call);
}

// Each adds calls of one, two or three operands, named by their text.
#define ADD1(TRAITS, KINDS, ...) ZUML_EACH(ZUML_ADD1, TRAITS, KINDS, __VA_ARGS__)
#define ADD2(TRAITS, KINDS, ...) ZUML_EACH(ZUML_ADD2, TRAITS, KINDS, __VA_ARGS__)
#define ADD3(TRAITS, KINDS, ...) ZUML_EACH(ZUML_ADD3, TRAITS, KINDS, __VA_ARGS__)
#define ZUML_ADD1(TRAITS, KINDS, CALL) \
  Add<ZUML_BARE KINDS>(TRAITS, #CALL, [](const auto& a) { return CALL; });
#define ZUML_ADD2(TRAITS, KINDS, CALL) \
  Add<ZUML_BARE KINDS>(TRAITS, #CALL, [](const auto& a, const auto& b) { return CALL; });
#define ZUML_ADD3(TRAITS, KINDS, CALL) \
  Add<ZUML_BARE KINDS>(TRAITS, #CALL,  \
                       [](const auto& a, const auto& b, const auto& c) { return CALL; });
#define ZUML_BARE(...) __VA_ARGS__
#define ZUML_EACH(...) ZUML_SCAN(ZUML_SCAN(ZUML_SCAN(ZUML_STEP(__VA_ARGS__))))
#define ZUML_SCAN(...) ZUML_SCAN3(ZUML_SCAN3(ZUML_SCAN3(__VA_ARGS__)))
#define ZUML_SCAN3(...) ZUML_SCAN9(ZUML_SCAN9(ZUML_SCAN9(__VA_ARGS__)))
#define ZUML_SCAN9(...) __VA_ARGS__
#define ZUML_STEP(ADD, TRAITS, KINDS, CALL, ...) \
  ADD(TRAITS, KINDS, CALL) __VA_OPT__(ZUML_AGAIN ZUML_NOW(ADD, TRAITS, KINDS, __VA_ARGS__))
#define ZUML_AGAIN() ZUML_STEP
#define ZUML_NOW ()

}  // namespace zuml_everywhere
