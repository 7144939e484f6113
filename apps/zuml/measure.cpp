// The command that measures: picture, threshold, parts, table, and the files asked for.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "apps/zuml/commands.h"
#include "apps/zuml/files.h"
#include "apps/zuml/progress.h"
#include "zuml/zuml.h"

namespace zuml_app {
namespace {

constexpr int kDirections = 36;  // of the Feret diameters: every 5 degrees

// One row of the table.
struct Part {
  int label;
  int area;
  int x, y, width, height;
  double centre_x, centre_y;
  double circularity, elongation;
  double min_feret, max_feret;
};

// The channel that is looked at; an alpha channel is left aside.
ZUMImage<ZUMByte> TakeChannel(const ZUMImage<ZUMByte>& picture, const MeasureOptions& options) {
  const int channels = picture.GetCSz();
  const bool alpha = channels == 2 || (channels == 4 && GetExtension(options.image) == ".png");
  if (channels > 3 && !alpha) {
    throw JobError("cannot measure '" + options.image + "': it has " + std::to_string(channels) +
                   " channels; 1 (grey) or 3 (colour) would be right, with alpha in .png files");
  }
  if (alpha) Remark("the alpha channel of '" + options.image + "' is left aside");
  const int colours = channels < 3 ? 1 : 3;
  if (options.channel != "gray") {
    const int c = std::stoi(options.channel);
    if (c >= colours) {
      throw JobError("'" + options.image + "' is a grey picture: --channel is to be gray or 0");
    }
    return picture.Channel(c);
  }
  if (colours == 1) return picture.Channel(0);
  // The luminance of the television standard, in 256ths.
  const ZUMImage<ZUMLong> red = picture.Channel(0), green = picture.Channel(1),
                          blue = picture.Channel(2);
  return (red * 77 + green * 150 + blue * 29) / 256;
}

// The least value of pixels in the upper class; 0 if nothing tells one class from another.
int FindThreshold(const ZUMImage<ZUMByte>& gray, const Threshold& threshold) {
  switch (threshold.kind) {
    case Threshold::Kind::kOtsu:
      return ZUMOtsu(gray, 0, 0, 255);
    case Threshold::Kind::kValley:
      return ZUMValleyThr(gray);
    case Threshold::Kind::kMinVariance:
      return ZUMMinVarianceThr(gray);
    case Threshold::Kind::kFixed:
      break;
  }
  return threshold.value;
}

// The opening and then the closing of the mask by squares.
ZUMImage<ZUMBool> Clean(const ZUMImage<ZUMBool>& mask, int open, int close) {
  const auto square = [](int n) { return ZUMRect(-n, -n, 0, 0, n, n, 0, 0); };
  ZUMImage<ZUMBool> result = mask;
  if (open > 0) result = ZUMDilateEx(ZUMErodeEx(result, square(open)), square(open));
  if (close > 0) {
    // What lies outside of the picture is background: parts do not join its border.
    const ZUMImage<ZUMBool> framed =
        ZUMAddFrame(result, ZUMRect(close, close, 0, 0, close, close, 0, 0), false);
    result = ZUMErode(ZUMDilateEx(framed, square(close)), square(close));
  }
  return result;
}

// The labels of the parts with such areas, numbered anew; 0 in the others.
ZUMImage<ZUMLong> KeepByArea(const ZUMImage<ZUMLong>& labels, int min_area, int max_area) {
  const ZUMImage<ZUMLong> areas = ZUMRegionArea(labels);
  const ZUMImage<ZUMLong> numbers(areas, 1, 0);
  int kept = 0;
  for (int l = areas.BeginX(); l <= areas.EndX(); ++l) {
    if (areas(l) >= min_area && areas(l) <= max_area) numbers(l) = ++kept;
  }
  return kept == areas.RoDXSz() ? labels : ZUMLut(labels, numbers, 0);
}

std::vector<Part> MeasureParts(const ZUMImage<ZUMLong>& labels) {
  const ZUMImage<ZUMLong> measures = ZUMRegionMeasures2D(labels);
  if (measures.EmptyP()) return {};
  const ZUMImage<ZUMReal> centres = ZUMRegionGravityCenterWide(labels);
  const ZUMImage<ZUMReal> circularity = ZUMRegionCircularity(labels);
  const ZUMImage<ZUMReal> elongation = ZUMRegionElongation(labels);
  const ZUMImage<ZUMReal> feret = ZUMRegionFeretDiameters(labels, kDirections);
  const ZUMImage<ZUMReal> min_feret = ZUMProjectMinY(feret), max_feret = ZUMProjectMaxY(feret);
  std::vector<Part> parts;
  for (int l = measures.BeginX(); l <= measures.EndX(); ++l) {
    const auto measure = [&](int c) { return measures(l, 0, 0, 0, c); };
    parts.push_back({l, measure(4), measure(0), measure(1), measure(2) - measure(0) + 1,
                     measure(3) - measure(1) + 1, centres(l), centres(l, 0, 0, 0, 1),
                     circularity(l), elongation(l), min_feret(l), max_feret(l)});
  }
  return parts;
}

// A measure as text; parts of one pixel have no elongation.
std::string Number(double value, int decimals) {
  if (std::isnan(value)) return "-";
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

void PrintParts(std::vector<Part> parts, int rows) {
  std::stable_sort(parts.begin(), parts.end(),
                   [](const Part& a, const Part& b) { return a.area > b.area; });
  std::printf("%6s %8s  %-22s %-17s %7s %7s %8s %8s\n", "label", "area", "box", "centre", "circul.",
              "elong.", "feret", "to");
  for (const Part& p : parts) {
    if (rows-- <= 0) break;
    char box[64];
    std::snprintf(box, sizeof box, "%d,%d %dx%d", p.x, p.y, p.width, p.height);
    const std::string centre = Number(p.centre_x, 1) + "," + Number(p.centre_y, 1);
    std::printf("%6d %8d  %-22s %-17s %7s %7s %8s %8s\n", p.label, p.area, box, centre.c_str(),
                Number(p.circularity, 3).c_str(), Number(p.elongation, 3).c_str(),
                Number(p.min_feret, 1).c_str(), Number(p.max_feret, 1).c_str());
  }
}

void WriteTable(const std::vector<Part>& parts, const std::string& path) {
  std::ofstream file(path);
  file << "label,area,x,y,width,height,centre_x,centre_y,circularity,elongation,min_feret,"
          "max_feret\n";
  for (const Part& p : parts) {
    file << p.label << ',' << p.area << ',' << p.x << ',' << p.y << ',' << p.width << ','
         << p.height;
    for (const double v :
         {p.centre_x, p.centre_y, p.circularity, p.elongation, p.min_feret, p.max_feret}) {
      file << ',' << Number(v, 6);
    }
    file << '\n';
  }
  if (!file.flush()) throw JobError("cannot write '" + path + "'");
}

// The picture in grey with each part tinted in a colour of its own and outlined in it.
ZUMImage<ZUMByte> DrawOverlay(const ZUMImage<ZUMByte>& gray, const ZUMImage<ZUMLong>& labels) {
  const ZUMRect box(-1, -1, 0, 0, 1, 1, 0, 0);
  const ZUMImage<ZUMByte> picture = ZUMAppendChannels(gray, gray, gray);
  const ZUMImage<ZUMByte> colours = ZUMLabelColor(labels);
  const ZUMImage<ZUMLong> sum = ZUMImage<ZUMLong>(picture) + ZUMImage<ZUMLong>(colours);
  const ZUMImage<ZUMByte> tinted = sum / 2;
  const ZUMImage<ZUMBool> outline = ZUMPointNotEqual(ZUMErodeEx(labels, box), labels);
  return ZUMImIf(labels > 0, ZUMImIf(outline, colours, tinted), picture);
}

}  // namespace

void Measure(const MeasureOptions& options) {
  if (!options.labels.empty() && GetExtension(options.labels) != ".zmg") {
    throw JobError("cannot write '" + options.labels +
                   "': labels go to .zmg files, which keep their type and region");
  }
  if (!options.overlay.empty() && GetExtension(options.overlay) != ".png") {
    throw JobError("cannot write '" + options.overlay + "': the overlay is a .png file");
  }
  RequireDistinct(options.image, {options.labels, options.overlay, options.table});
  Progress progress;
  const ZUMImage<ZUMByte> gray = TakeChannel(ReadBytes(options.image), options);

  progress.Step("finding the threshold");
  const int threshold = FindThreshold(gray, options.threshold);
  ZUMImage<ZUMBool> mask = ZUMThr(gray, static_cast<ZUMByte>(threshold));
  if (options.dark) mask = !mask;
  const bool split = threshold > 0 || options.threshold.kind == Threshold::Kind::kFixed;
  if (!split) {
    Remark("no threshold tells parts of '" + options.image +
           "' from background; --threshold takes a grey level");
    mask = ZUMImage<ZUMBool>(mask, 1, false);
  }

  progress.Step("labelling parts");
  mask = Clean(mask, options.open, options.close);
  const bool eight = options.connectivity == 8;
  const ZUMImage<ZUMBool>& connectivity = eight ? ZUMCon8 : ZUMCon4;
  // What surrounds parts that join across corners does not.
  if (options.fill) mask = ZUMFillRegion(mask, eight ? ZUMCon4 : ZUMCon8);
  const ZUMImage<ZUMLong> labels =
      KeepByArea(ZUMRegionLabel(mask, connectivity), options.min_area, options.max_area);

  progress.Step("measuring parts");
  const std::vector<Part> parts = MeasureParts(labels);
  std::printf("%s: %d x %d, %s, %zu part%s\n", options.image.c_str(), gray.RoDXSz(), gray.RoDYSz(),
              split ? ("threshold " + std::to_string(threshold)).c_str() : "no threshold",
              parts.size(), parts.size() == 1 ? "" : "s");
  if (!parts.empty() && options.rows > 0) PrintParts(parts, options.rows);

  progress.Step("writing files");
  if (!options.labels.empty()) WriteFile(labels, options.labels);
  if (!options.table.empty()) WriteTable(parts, options.table);
  if (!options.overlay.empty()) WriteFile(DrawOverlay(gray, labels), options.overlay);
}

}  // namespace zuml_app
