// What the headers hold as templates, with all members, under the warnings that an application may
// have switched on: the build of this program treats them as errors.
#include <zuml/zuml.h>

#include <vector>

namespace {

struct Entry {
  ZUMByte* pixel;
  int height;
  unsigned sequence;
};
int LevelOf(const Entry& entry) { return *entry.pixel; }

}  // namespace

template class ZUMArray<ZUMBool>;
template class ZUMArray<ZUMBasePoint<int>>;
template ZUMByte& ZUMArray<ZUMByte>::operator[](unsigned);
template ZUMByte& ZUMArray<ZUMByte>::operator[](unsigned long long);
template class XQSimpleList<XQSimpleList<int>>;
template class XQSimpleList<int>;
template class XQSimpleCircularDblList<ZUMBasePoint<int>>;
template class ZUMBlockFIFO<Entry>;
template class ZUMGrowingStack<Entry>;
template class ZUMArrayHeap<Entry, ZUMSmallestFirst<&Entry::pixel>>;
template class ZUMFIFOHeap<Entry, ZUMGreatestFirst<&Entry::height>>;
template class ZUMLevelQueue<Entry, ZUMSmallestFirst<&LevelOf>>;

namespace {

class CTaskCount final : public XQTask {
 public:
  ZUMRoDRef part;
  const ZUMImage<ZUMLong>* result;
  const ZUMImage<ZUMByte>* image;

  void Run() override {
    ZUMForEachPlacedRun(
        part,
        [](const ZUMRunPlace& at, ZUMLong* r, const ZUMByte* x, std::ptrdiff_t n) {
          for (std::ptrdiff_t i = 0; i < n; ++i) r[i] = at.y + x[i];
        },
        *result, *image);
  }
};

template <class P>
P Arithmetic(P a) {
  P result = ZUMWrapAdd(a, ZUMWrapSub(a, ZUMWrapMul(a, ZUMWrapDiv(a, ZUMWrapNeg(a)))));
  if constexpr (std::integral<P>) result = ZUMShiftLeft(ZUMShiftRight(result, 2), 1);
  return ZUMConvertPixel<P>(ZUMConvertPixel<ZUMComplex>(result));
}

template <template <int> class Sweep, class... Rasters>
bool Walk(const ZUMRoDRef& rod, const Rasters&... rasters) {
  Sweep<sizeof...(Rasters)> sweep(rod, rasters...);
  if constexpr (requires { sweep.Next(); }) {
    sweep.Next();
  } else {
    sweep.Previous();
  }
  return sweep.GetStart1() == nullptr;
}

}  // namespace

int main() {
  std::vector<ZUMByte> pixels(64, ZUMByte(3));
  const ZUMImage<ZUMByte> image = ZUMWrapPixels(std::span(pixels), ZUMPlaneBox(0, 1, 7, 8));
  ZUMShowPage("pixels", [&] { return std::vector<ZUMGenericImage>{image}; });
  const ZUMImage<ZUMLong> sums =
      ZUMRunTasks<CTaskCount, ZUMLong>(image, 1, [&](CTaskCount& task) { task.image = &image; });
  bool right = sums(7, 8) == 11;
  right = right && ZUMRunTasksPerChannel<CTaskCount, ZUMLong>(
                       image, 1, [&](int c) { return image.Channel(c); },
                       [](CTaskCount& task, const ZUMImage<ZUMByte>& view) {
                         task.image = &view;
                       }).GetCSz() == 1;
  right =
      right && ZUMForEachRunWhile(
                   image, [](const ZUMByte* x, std::ptrdiff_t n) { return x[n - 1] == 3; }, image);
  right = right && !Walk<ZUMGenericSweep>(image, image, sums, image, sums, image) &&
          !Walk<ZUMGenericSweepCoords>(image, image, sums) &&
          Walk<ZUMGenericSweepY>(image.Row(1).Cut(ZUMPlaneBox(0, 1, 0, 1)), image) &&
          !Walk<ZUMGenericInvSweep>(image, image, sums) &&
          !Walk<ZUMGenericContinuousSweep>(image, image, sums);
#define ZUML_ARITHMETIC(PIX) right = right && Arithmetic(PIX(0)) == PIX(0);
  ZUML_INTEGER_TYPES(ZUML_ARITHMETIC)
#undef ZUML_ARITHMETIC
  right = right && Arithmetic(ZUMReal(1)) == 3 && ZUMImage<ZUMReal>(image)(1, 1) == 3;
  return right ? 0 : 1;
}
