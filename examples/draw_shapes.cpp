// draw_shapes: every shape once, opaque and blended, in a picture of three channels. What has no
// form for a colour is drawn channel by channel.

#include <zuml/zuml.h>

#include <iostream>

namespace {

using Point = ZUMBasePoint<int>;

// Colours hold the first channel in their low bits: red, green, blue from right to left.
constexpr std::uint32_t kRed = 0x3030E0, kGreen = 0x40B040, kBlue = 0xE08030, kYellow = 0x20D0F0,
                        kWhite = 0xFFFFFF;

// Calls draw(value, channel) for the three channels of a colour.
template <class Draw>
void InColour(std::uint32_t colour, Draw draw) {
  for (int c = 0; c < 3; ++c) draw(static_cast<ZUMByte>(colour >> (8 * c)), c);
}

ZUMImage<ZUMByte> DrawGround() {
  ZUMImage<ZUMByte> ground(ZUMRect(0, 0, 0, 0, 479, 319, 0, 0), 3, ZUMByte{0});
  for (int y = 0; y < 320; y += 4) {
    const int grey = 40 + y / 5;
    ZUMDrawFilledRect(ground, ZUMRect(0, y, 0, 0, 479, y + 3, 0, 0),
                      static_cast<std::uint32_t>(grey * 0x010101));
  }
  return ground;
}

void DrawOutlines(ZUMImage<ZUMByte>& picture) {
  for (int i = 0; i <= 8; ++i) ZUMDrawLine(picture, {20, 80}, {110, 20 + 9 * i}, kYellow);
  ZUMDrawRect(picture, ZUMRect(135, 20, 0, 0, 215, 90, 0, 0), kRed);
  ZUMDrawCircle(picture, {285, 55}, 36, kGreen);
  const Point star[] = {{395, 18}, {420, 92}, {357, 46}, {433, 46}, {370, 92}};
  InColour(kWhite, [&](ZUMByte v, int c) { ZUMDrawPolygon(picture, star, 5, v, c); });
}

void DrawFilled(ZUMImage<ZUMByte>& picture) {
  InColour(kBlue, [&](ZUMByte v, int c) {
    ZUMDrawFilledEllipse(picture, ZUMRect(20, 120, 0, 0, 110, 190, 0, 0), v, c);
  });
  ZUMDrawFilledRect(picture, ZUMRect(135, 120, 0, 0, 215, 190, 0, 0), kRed);
  ZUMDrawFilledCircle(picture, {285, 155}, 36, kGreen);
  const Point star[] = {{395, 118}, {420, 192}, {357, 146}, {433, 146}, {370, 192}};
  InColour(kYellow, [&](ZUMByte v, int c) { ZUMDrawFilledPolygon(picture, star, 5, v, c); });
}

// A mask at several places, each with another alpha.
void DrawBlended(ZUMImage<ZUMByte>& picture) {
  const ZUMImage<ZUMBool> disc = ZUMCircleIm(30);
  for (int i = 0; i < 6; ++i) {
    ZUMDrawMask(picture, disc, {50 + 34 * i, 255}, i % 2 ? kYellow : kBlue, 0.25 + 0.1 * i);
  }
}

// A part of the picture itself, turned by 30 degrees about (360, 255) and shrunk to 0.8.
void DrawTurned(ZUMImage<ZUMByte>& picture) {
  const double cosine = 0.8660254 / 0.8, sine = 0.5 / 0.8;
  const double to_source[2][3] = {{cosine, sine, 285 - cosine * 360 - sine * 255},
                                  {-sine, cosine, 155 + sine * 360 - cosine * 255}};
  const ZUMImage<ZUMByte> part = picture.Cut(ZUMRect(240, 110, 0, 0, 330, 200, 0, 0));
  ZUMDrawWarpAffine2D(picture, part, to_source, ZUMInterpolationLinear, 0);
}

}  // namespace

int main() {
  try {
    ZUMImage<ZUMByte> picture = DrawGround();
    DrawOutlines(picture);
    DrawFilled(picture);
    DrawBlended(picture);
    DrawTurned(picture);

    // The star as a mask over the picture in grey levels, beside the picture in a column.
    ZUMImage<ZUMBool> mask(picture, 1, false);
    const Point star[] = {{240, 30}, {330, 290}, {100, 130}, {380, 130}, {150, 290}};
    ZUMDrawFilledPolygon(mask, star, 5, true, 0);
    const ZUMImage<ZUMByte> overlay = ZUMOverlay(picture.Channel(1), mask, 240, 60, 60, 0.45);

    ZUMWritePNG(picture, "shapes.png");
    ZUMWritePNG(ZUMHJointIm(picture, overlay, 0, 0, 0), "shapes_overlay.png");

    // What the line adds is what a profile under it reads.
    ZUMImage<ZUMLong> votes(picture, 1, 0);
    for (int i = 0; i < 3; ++i) ZUMAddLine(votes, {0, 10 * i}, {479, 319 - 10 * i}, 1, 0);
    const ZUMImage<ZUMLong> profile = ZUMGetLine(votes, {0, 0}, {479, 319}, 0);
    std::cout << "lines through the crossing: " << ZUMMax(profile) << "\n";
    return ZUMMax(profile) == 3 ? 0 : 1;
  } catch (const XQException& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
