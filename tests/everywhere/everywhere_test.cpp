/// Every operation where its own tests do not go: at the ends of the coordinates, with images of
/// nothing, with boxes and elements beyond all images; and what it leaves of its operands.
///
/// An image without channels is an image: an operation gives a result without channels, or the
/// neutral value of what it computes, or refuses it by an XQException. The same holds for an image
/// of an empty region.

#include "tests/everywhere/forkedcases.h"
#include "tests/everywhere/operation.h"

namespace zuml_everywhere {
namespace {

using Point = ZUMBasePoint<long long>;

/// The pixels in sweep order.
std::string PixelsOf(const ZUMGenericImage& image) {
  std::string pixels;
  if (image.EmptyP()) return pixels;
  const ZUMRect box = image.Rect();
  const auto line = static_cast<std::size_t>(image.RoDXSz() * image.GetPixSz());
  for (int c = 0; c < image.GetCSz(); ++c)
    for (long long t = box.begin.t; t <= box.end.t; ++t)
      for (long long z = box.begin.z; z <= box.end.z; ++z)
        for (long long y = box.begin.y; y <= box.end.y; ++y)
          pixels.append(
              static_cast<const char*>(image.PixelAddress(
                  box.begin.x, static_cast<int>(y), static_cast<int>(z), static_cast<int>(t), c)),
              line);
  return pixels;
}

/// Whether the box moved by the shift stays within 32 bits and, if so, is the other one.
bool IsMoved(const ZUMRect& from, const Point& shift, const ZUMRect& to, bool& fits) {
  fits = true;
  const auto moved = [&fits](int x, long long by, int other) {
    if (x + by != static_cast<int>(x + by)) fits = false;
    return x + by == other;
  };
  const auto corner = [&](const ZUMBasePoint<int>& a, const ZUMBasePoint<int>& b) {
    const bool x = moved(a.x, shift.x, b.x), y = moved(a.y, shift.y, b.y);
    const bool z = moved(a.z, shift.z, b.z), t = moved(a.t, shift.t, b.t);
    return x && y && z && t;
  };
  const bool begin = corner(from.begin, to.begin), fits_begin = fits;
  const bool end = corner(from.end, to.end);
  fits = fits && fits_begin;
  return begin && end;
}

Outcome Call(const Operation& operation, Tray& tray) {
  Outcome outcome;
  try {
    operation.run(tray, &outcome);
  } catch (const XQException& e) {
    outcome.thrown = true;
    outcome.text = e.what();
  } catch (const std::exception& e) {
    outcome.thrown = outcome.foreign = true;
    outcome.text = e.what();
  }
  return outcome;
}
Outcome Call(const Operation& operation, const Setting& setting) {
  Tray tray(setting);
  return Call(operation, tray);
}

std::vector<Kind> KindsOf(const Operation& operation) {
  Tray tray({});
  operation.run(tray, nullptr);
  return tray.GetKinds();
}

/// The result, or a refusal of the library's own: nothing else, within the memory.
void CheckBounded(ForkedCases& cases, const Operation& operation, const Outcome& outcome) {
  if (outcome.foreign) cases.Fail("throws another exception: " + outcome.text);
  if (outcome.thrown && (operation.traits & kGrows) == 0 &&
      outcome.text.find("out of memory") != std::string::npos) {
    cases.Fail("takes all memory: " + outcome.text);
  }
}

std::string Shorten(const std::string& text) { return text.substr(0, 100); }

/// What is wrong with the outcome as that of the same images at another place; "" if nothing is.
std::string CompareMoved(const Operation& operation, const Outcome& here, const Outcome& there,
                         const Point& shift) {
  if ((operation.traits & kDepends) != 0) return "";
  const bool mirrors = (operation.traits & kMirrors) != 0;
  if (mirrors && (shift.x < 0 || shift.y < 0 || shift.z < 0 || shift.t < 0)) return "";
  const bool stays = mirrors || (operation.traits & kStays) != 0;
  bool fits = true, moved = true;
  if (here.has_image && !here.image.EmptyP() && !stays) {
    moved = IsMoved(here.image.Rect(), shift, there.image.Rect(), fits);
    if (!fits) return "";
  }
  if (here.text != there.text)
    return "'" + Shorten(here.text) + "' becomes '" + Shorten(there.text) + "'";
  if (!here.has_image) return "";
  if (here.image.EmptyP() && there.image.EmptyP()) return "";
  if (!moved) return "lies in " + Text(there.image.Rect()) + ", not " + Text(here.image.Rect());
  if (here.image.GetCSz() != there.image.GetCSz()) return "other channels";
  return PixelsOf(here.image) == PixelsOf(there.image) ? "" : "other pixels";
}

class Everywhere : public testing::TestWithParam<std::string> {
 protected:
  const std::vector<Operation>& GetOperations() const { return Operations()[GetParam()]; }

  void SetUp() override {
    // The processes are not what the thread sanitizer looks at, and it takes long.
    if (kThreadSanitizer) GTEST_SKIP();
  }
};

TEST_P(Everywhere, ResultsShareNoPixelsWithOperands) {
  ForkedCases::Run([&](ForkedCases& cases) {
    for (const Operation& operation : GetOperations()) {
      for (const Change change : {Change::kNone, Change::kIdentity}) {
        const bool identity = change == Change::kIdentity;
        if (!cases.Begin(operation.name + (identity ? ", identity" : ""))) continue;
        Setting setting;
        setting.change = change;
        Tray tray(setting);
        operation.run(tray, nullptr);
        Tray used(setting);
        const Outcome outcome = Call(operation, used);
        if (outcome.thrown && !identity) cases.Fail("throws " + outcome.text);
        for (std::size_t i = 0; i < used.GetImages().size(); ++i) {
          const ZUMGenericImage& image = used.GetImages()[i];
          if (PixelsOf(image) != PixelsOf(tray.GetImages()[i])) cases.Fail("changes an operand");
          if (outcome.has_image && outcome.image.GetSimpleRaster() == image.GetSimpleRaster() &&
              (operation.traits & kShares) == 0) {
            cases.Fail("shares an operand's pixels");
          }
        }
        if (!outcome.has_image || (operation.traits & (kShares | kFramed)) != 0) continue;
        const ZUMGenericImage& image = outcome.image;
        if (image.EmptyP()) continue;
        const long long size = 1LL * image.NPixels() * image.GetCSz();
        if (image.GetSimpleRaster()->GetSimpleRasterSz() != size ||
            image.GetMPX() != image.BeginX() || image.GetMPY() != image.BeginY() ||
            image.GetMPZ() != image.BeginZ() || image.GetMPT() != image.BeginT() ||
            image.GetMPC() != 0) {
          cases.Fail("has a raster beyond its region");
        }
      }
    }
  });
}

TEST_P(Everywhere, EndsOfTheCoordinatesAreLikeAnyPlace) {
  ForkedCases::Run([&](ForkedCases& cases) {
    for (const Operation& operation : GetOperations()) {
      for (int axis = 0; axis <= 4; ++axis) {
        for (const bool high : {false, true}) {
          const std::string end = high ? " at the greatest " : " at the least ";
          if (!cases.Begin(operation.name + end + "XYZT*"[axis])) continue;
          const Outcome here = Call(operation, Setting());
          Setting setting;
          setting.move = axis;
          setting.high = high;
          Tray tray(setting);
          const Outcome there = Call(operation, tray);
          CheckBounded(cases, operation, there);
          const std::string wrong = CompareMoved(operation, here, there, tray.GetShift());
          if (!wrong.empty()) cases.Fail(wrong);
        }
      }
    }
  });
}

TEST_P(Everywhere, ImagesOfNothingAndOfAnyValue) {
  constexpr std::pair<Change, const char*> kChanges[] = {{Change::kNoChannel, "no channel"},
                                                         {Change::kNoPixel, "no pixel"},
                                                         {Change::kDefault, "a default image"},
                                                         {Change::kAnyValue, "any value"}};
  ForkedCases::Run([&](ForkedCases& cases) {
    for (const Operation& operation : GetOperations()) {
      const std::vector<Kind> kinds = KindsOf(operation);
      for (const auto& [change, name] : kChanges) {
        for (int operand = -1; operand < static_cast<int>(kinds.size()); ++operand) {
          if (operand >= 0 && kinds[static_cast<std::size_t>(operand)] > Kind::kElement) continue;
          const std::string which = operand < 0 ? "all" : std::to_string(operand);
          if (!cases.Begin(operation.name + ", operand " + which + " of " + name)) continue;
          Setting setting;
          setting.change = change;
          setting.operand = operand;
          CheckBounded(cases, operation, Call(operation, setting));
        }
      }
    }
  });
}

TEST_P(Everywhere, ExtentsBeyondTheImage) {
  constexpr std::pair<Change, const char*> kWays[] = {{Change::kBothWays, "both ways"},
                                                      {Change::kLowWay, "the low way"},
                                                      {Change::kHighWay, "the high way"},
                                                      {Change::kFarLow, "far low"},
                                                      {Change::kFarHigh, "far high"}};
  constexpr long long kExtents[] = {1000, 1000000, 1000000000, 1LL << 31};
  ForkedCases::Run([&](ForkedCases& cases) {
    for (const Operation& operation : GetOperations()) {
      const std::vector<Kind> kinds = KindsOf(operation);
      for (int operand = 0; operand < static_cast<int>(kinds.size()); ++operand) {
        const Kind kind = kinds[static_cast<std::size_t>(operand)];
        if (kind == Kind::kImage) continue;
        for (int axis = 0; axis <= (kind == Kind::kNumber ? 0 : 4); ++axis) {
          for (const auto& [way, name] : kWays) {
            if (kind == Kind::kNumber && way > Change::kLowWay) continue;
            for (const long long extent : kExtents) {
              if (!cases.Begin(operation.name + ", operand " + std::to_string(operand) + " " +
                               "XYZT*"[axis] + " " + name + " " + std::to_string(extent))) {
                continue;
              }
              Setting setting;
              setting.change = way;
              setting.operand = operand;
              setting.axis = axis;
              // A result of that size takes its time without showing more.
              const bool grows = (operation.traits & kGrows) != 0;
              setting.extent = grows && extent == 1000000 ? extent / 10 : extent;
              CheckBounded(cases, operation, Call(operation, setting));
            }
          }
        }
      }
    }
  });
}

std::vector<std::string> GetSubsystems() {
  std::vector<std::string> names;
  for (const auto& [name, operations] : Operations()) names.push_back(name);
  return names;
}

INSTANTIATE_TEST_SUITE_P(Of, Everywhere, testing::ValuesIn(GetSubsystems()),
                         [](const auto& subsystem) { return subsystem.param; });

}  // namespace
}  // namespace zuml_everywhere
