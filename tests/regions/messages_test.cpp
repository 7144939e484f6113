// The texts of what the operations on regions refuse.

#include "tests/regions/labelpictures.h"
#include "zuml/regions/filling.h"
#include "zuml/regions/labelcolor.h"
#include "zuml/regions/labelling.h"
#include "zuml/regions/neighbours.h"
#include "zuml/regions/regionmoments.h"
#include "zuml/regions/zones.h"

namespace {

using namespace zuml_test;

TEST(Regions, Messages) {
  const ZUMRect box(0, 0, 0, 0, 1, 0, 0, 0);
  const ZUMImage<ZUMBool> picture(box, 1, true), none,
      pairs(ZUMRect(-1, 0, 0, 0, 1, 0, 0, 0), 2, true),
      aside(ZUMRect(1, 0, 0, 0, 2, 0, 0, 0), 1, true);
  const ZUMImage<ZUMLong> labels(box, 1, 1), two_channels(box, 2, 1), nothing;
  const std::string con = ": Dimensions of the connectivity image are not allowed";
  const std::string frame = "ZUMRaster: It is not allowed create a framed raster with an empty RoD";
  const std::string undefined = ":Valor indefinido por imagen vacia";
  const auto refused = [](const std::string& text, auto f) { EXPECT_EQ(MessageOf(f), text); };
  for (const ZUMImage<ZUMBool>& bad : {pairs, aside, none}) {
    refused("RegionLabel" + con, [&] { ZUMRegionLabel(picture, bad); });
    refused("RegionLabel" + con, [&] { ZUMRegionValueLabel(picture, bad); });
    refused("RegionsOfInfluence" + con, [&] { ZUMRegionsOfInfluence(labels, bad); });
  }
  refused(frame, [&] { ZUMRegionLabel(none, ZUMCon8); });
  refused(frame, [&] { ZUMRegionValueLabel(none, ZUMCon8); });
  refused(frame, [&] { ZUMRegionsOfInfluence(nothing, ZUMCon8); });
  refused("ZUMAddFrame: It is not allowed add a frame to an empty image",
          [&] { ZUMFillRegion(none, ZUMCon8); });
  refused("ZUMMinMax" + undefined, [&] { ZUMRelabel(nothing); });
  refused("ZUMMin" + undefined, [&] { ZUMLabelColor(nothing); });

  using Neighbours = decltype(&ZUMRegionNeighbour);
  const std::tuple<Neighbours, std::string, std::string> neighbours[] = {
      {ZUMRegionExtFrontierArea, "ZUMRegionExtFrontierArea", ""},
      {ZUMRegionNeighbour, "ZUMRegionNeighbour", "ZUMMinMax" + undefined},
      {ZUMRegionNeighbour2, "ZUMRegionNeighbour2", "ZUMMinMax" + undefined},
      {ZUMRegionNeighbourFrontier2, "ZUMRegionNeighbourFrontier2", "ZUMMinMax" + undefined}};
  for (const auto& [run, name, of_nothing] : neighbours) {
    refused(name + con, [&, f = run] { f(labels, aside); });
    refused(of_nothing, [&, f = run] { f(nothing, ZUMCon8); });
  }

  using Extend = decltype(&ZUMExtendRegionToMax<ZUMLong>);
  const std::pair<Extend, std::string> extensions[] = {
      {ZUMExtendRegionToMax, "ZUMExtendRegionToMax"},
      {ZUMExtendRegionToMin, "ZUMExtendRegionToMin"}};
  for (const auto& [run, name] : extensions) {
    refused(name + con, [&, f = run] { f(picture, labels, aside); });
    // The channels are the first error.
    refused(name + ": Images with different number of channels are not allowed",
            [&, f = run] { f(picture, two_channels, aside); });
  }

  const std::string order = ": it only calcules moments of order 0,1 and 2";
  for (const auto& [p, q] : {std::pair{3, 0}, {0, 3}, {-1, 0}, {0, -1}, {2, 2}}) {
    refused("ZUMRegionCenteredMoment" + order,
            [&, p = p, q = q] { ZUMRegionCenteredMoment(labels, p, q); });
    refused(p == q ? "" : "ZUMRegionMoment" + order,
            [&, p = p, q = q] { ZUMRegionMoment(labels, p, q); });
  }
}

}  // namespace
