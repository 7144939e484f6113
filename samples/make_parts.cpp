// make_parts OUT.png [TRUTH.csv]: draws the sample picture of the demonstration, metal parts on a
// conveyor seen by a camera, and what is known of them.
//
// The light falls off to one side, the belt has a texture, the sensor is noisy, and some pieces
// touch. The picture is the same on every machine.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <fstream>
#include <functional>
#include <numbers>
#include <string>
#include <vector>

#include "zuml/core/zumimage.h"
#include "zuml/io/rwpng.h"

namespace {

constexpr int kWidth = 640, kHeight = 480;

// How far a point lies inside a shape around the origin, in pixels; negative outside.
using Shape = std::function<double(double x, double y)>;

Shape Disc(double radius) {
  return [=](double x, double y) { return radius - std::hypot(x, y); };
}

Shape Ring(double outer, double inner) {
  return [=](double x, double y) {
    const double r = std::hypot(x, y);
    return std::min(outer - r, r - inner);
  };
}

Shape Bar(double length, double width) {
  return [=](double x, double y) {
    return std::min(length / 2 - std::abs(x), width / 2 - std::abs(y));
  };
}

// A hexagon, by the distance of its flats, with a hole.
Shape Nut(double flats, double hole) {
  return [=](double x, double y) {
    double inside = std::hypot(x, y) - hole / 2;
    for (int side = 0; side < 6; ++side) {
      const double a = side * std::numbers::pi / 3;
      inside = std::min(inside, flats / 2 - (x * std::cos(a) + y * std::sin(a)));
    }
    return inside;
  };
}

Shape Bolt(double length, double shaft, double head) {
  return [=](double x, double y) {
    const double body = Bar(length, shaft)(x, y);
    const double top = Bar(head / 2, head)(x + length / 2, y);
    return std::max(body, top);
  };
}

// A piece lies somewhere, turned; pieces of one group touch.
struct Piece {
  const char* name;
  int group;
  double x, y, degrees;
  Shape shape;
};

std::vector<Piece> MakePieces() {
  return {
      {"washer", 1, 80, 90, 0, Ring(42, 20)},
      {"nut", 2, 200, 80, 12, Nut(70, 34)},
      {"bolt", 3, 340, 95, -25, Bolt(120, 22, 46)},
      {"disc", 4, 480, 80, 0, Disc(36)},
      {"bar", 5, 580, 130, 70, Bar(130, 18)},
      {"disc", 6, 90, 235, 0, Disc(30)},
      {"disc", 6, 148, 250, 0, Disc(30)},
      {"washer", 7, 270, 220, 0, Ring(30, 12)},
      {"bar", 8, 400, 230, -8, Bar(110, 34)},
      {"nut", 9, 520, 270, 40, Nut(56, 26)},
      {"bolt", 10, 110, 380, 15, Bolt(130, 20, 42)},
      {"disc", 11, 250, 370, 0, Disc(18)},
      {"disc", 12, 310, 410, 0, Disc(9)},
      {"nut", 13, 390, 370, 5, Nut(62, 30)},
      {"bar", 13, 445, 372, 88, Bar(90, 46)},
      {"washer", 14, 570, 390, 0, Ring(46, 30)},
  };
}

// A small generator with the same numbers everywhere.
class Noise {
 public:
  /// About normally distributed, with deviation 1.
  double Next() {
    double sum = 0;
    for (int i = 0; i < 12; ++i) sum += static_cast<double>(Step()) / 4294967296.0;
    return sum - 6;
  }

 private:
  std::uint32_t Step() {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return static_cast<std::uint32_t>(state_ >> 32);
  }
  std::uint64_t state_ = 2024;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fprintf(stderr, "usage: make_parts OUT.png [TRUTH.csv]\n");
    return 2;
  }
  try {
    const std::vector<Piece> pieces = MakePieces();
    std::vector<int> areas(pieces.size(), 0);
    const ZUMImage<ZUMByte> picture(ZUMRect(0, 0, 0, 0, kWidth - 1, kHeight - 1, 0, 0), 1, 0);
    Noise noise;
    for (int y = 0; y < kHeight; ++y) {
      for (int x = 0; x < kWidth; ++x) {
        double covered = 0;
        for (std::size_t i = 0; i < pieces.size(); ++i) {
          const Piece& p = pieces[i];
          const double a = p.degrees * std::numbers::pi / 180;
          const double u = (x - p.x) * std::cos(a) + (y - p.y) * std::sin(a);
          const double v = (y - p.y) * std::cos(a) - (x - p.x) * std::sin(a);
          const double inside = p.shape(u, v);
          covered = std::max(covered, std::clamp(inside + 0.5, 0.0, 1.0));
          areas[i] += inside >= 0;
        }
        const double light = 1.15 - 0.4 * x / kWidth - 0.1 * y / kHeight;
        const double belt = 52 + 5 * std::sin(y * 0.55) + 2 * std::sin(x * 0.13);
        const double metal = 176 + 10 * std::sin(x * 0.9 + y * 0.7);
        const double value = light * (belt + covered * (metal - belt)) + 5 * noise.Next();
        picture(x, y) = static_cast<ZUMByte>(std::clamp(value, 0.0, 255.0));
      }
    }
    ZUMWritePNG(picture, argv[1]);
    if (argc == 3) {
      std::ofstream truth(argv[2]);
      truth << "group,name,x,y,area\n";
      for (std::size_t i = 0; i < pieces.size(); ++i) {
        const Piece& p = pieces[i];
        truth << p.group << ',' << p.name << ',' << p.x << ',' << p.y << ',' << areas[i] << '\n';
      }
      if (!truth.flush()) throw std::runtime_error(std::string("cannot write ") + argv[2]);
    }
  } catch (const std::exception& e) {
    std::fprintf(stderr, "make_parts: %s\n", e.what());
    return 1;
  }
  return 0;
}
