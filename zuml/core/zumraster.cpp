#include "zuml/core/zumraster.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include "zuml/core/detail/boxes.h"
#include "zuml/core/xqdiagnostics.h"
#include "zuml/core/xqexception.h"
#include "zuml/core/xqmemory.h"
#include "zuml/core/zumrodrect.h"

namespace {

constexpr std::int64_t kMaxBlockBytes = std::numeric_limits<std::int32_t>::max();

using Sizes = std::array<std::int64_t, 5>;

// Bytes of a block. Each product is tested before the next factor, so that none can overflow.
std::size_t RequireBlockSize(const Sizes& sizes, int pix_sz) {
  for (const std::int64_t size : sizes) {
    if (size < 0) {
      throw XQException("ZUMSimpleRaster: negative size %lld", static_cast<long long>(size));
    }
  }
  const bool empty = std::find(sizes.begin(), sizes.end(), 0) != sizes.end();
  std::int64_t bytes = empty ? 0 : pix_sz;
  for (const std::int64_t size : sizes) {
    if (size > kMaxBlockBytes || (bytes *= size) > kMaxBlockBytes) {
      throw XQException(
          "ZUMSimpleRaster: a block of %lld x %lld x %lld x %lld pixels with %lld channels of %d "
          "bytes is beyond the limit of 2147483647 bytes",
          static_cast<long long>(sizes[0]), static_cast<long long>(sizes[1]),
          static_cast<long long>(sizes[2]), static_cast<long long>(sizes[3]),
          static_cast<long long>(sizes[4]), pix_sz);
    }
  }
  return static_cast<std::size_t>(bytes);
}

// A linked block over a box with a frame. Sizes are formed in 64 bits: a box may span all 32-bit
// coordinates.
ZUMSimpleRaster* MakeBlock(const ZUMRect& box, const ZUMRect& frame, int csz, ZUMPixelType type,
                           void* data) {
  const auto size = [&](zuml_detail::Axis axis) {
    return zuml_detail::SizeOf(box, axis) + frame.begin.*axis + frame.end.*axis;
  };
  const Sizes sizes = {size(zuml_detail::kX), size(zuml_detail::kY), size(zuml_detail::kZ),
                       size(zuml_detail::kT), csz};
  RequireBlockSize(sizes, ZUMSimpleRaster::PixelTypeToSz(type));
  auto* block =
      new ZUMSimpleRaster(static_cast<int>(sizes[0]), static_cast<int>(sizes[1]),
                          static_cast<int>(sizes[2]), static_cast<int>(sizes[3]), csz, type, data);
  block->Link();
  return block;
}

ZUMSimpleRaster* MakeEmptyBlock(ZUMPixelType type) {
  auto* block = new ZUMSimpleRaster(0, 0, 0, 0, 0, type);
  block->Link();
  return block;
}

const ZUMRegionOfDefinition& RequirePoints(const ZUMRegionOfDefinition& rod) {
  if (rod.EmptyP()) {
    throw XQException("ZUMRaster: It is not allowed create a framed raster with an empty RoD");
  }
  return rod;
}

}  // namespace

ZUMSimpleRaster::ZUMSimpleRaster(int x, int y, int z, int t, int c, ZUMPixelType type)
    : ZUMSimpleRaster(x, y, z, t, c, type, nullptr) {}

ZUMSimpleRaster::ZUMSimpleRaster(int x, int y, int z, int t, int c, ZUMPixelType type, void* data)
    : type_(type),
      pix_sz_(PixelTypeToSz(type)),
      x_sz_(x),
      y_sz_(y),
      z_sz_(z),
      t_sz_(t),
      c_sz_(c),
      data_(data),
      owner_(false) {
  const std::size_t bytes = RequireBlockSize({x, y, z, t, c}, pix_sz_);
  if (!data_ && bytes != 0) {
    data_ = XQMAlloc(bytes);
    owner_ = true;
  }
}

// Blocks are shared through their count, never copied.
ZUMSimpleRaster::ZUMSimpleRaster(const ZUMSimpleRaster& other)
    : ZUMSimpleRaster(0, 0, 0, 0, 0, other.type_) {
  XQVerifyFun("0", __FILE__, __LINE__, nullptr);
}

ZUMSimpleRaster::~ZUMSimpleRaster() {
  if (owner_) XQFree(data_);
}

void ZUMSimpleRaster::Unlink() const noexcept {
  // The last view must see all that the others wrote before the pixels go back.
  if (count_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

int ZUMSimpleRaster::PixelTypeToSz(ZUMPixelType type) {
  switch (type) {
#define ZUML_SIZE_CASE(TYPE) \
  case TYPE##Pixel:          \
    return static_cast<int>(sizeof(TYPE));
    ZUML_ALL_TYPES(ZUML_SIZE_CASE)
#undef ZUML_SIZE_CASE
  }
  return 0;
}

bool ZUMSimpleRaster::InRaster(const void* p) const {
  const auto address = reinterpret_cast<std::uintptr_t>(p);
  const auto begin = reinterpret_cast<std::uintptr_t>(data_);
  const auto bytes = static_cast<std::uintptr_t>(GetSimpleRasterSz() * pix_sz_);
  return data_ != nullptr && address >= begin && address - begin < bytes;
}

void ZUMSimpleRaster::FlipY() {
  if (!data_) return;
  const std::ptrdiff_t line = std::ptrdiff_t{x_sz_} * pix_sz_;
  const std::ptrdiff_t lines = std::ptrdiff_t{y_sz_} * z_sz_ * t_sz_;
  char* channel = static_cast<char*>(data_);
  for (int c = 0; c < c_sz_; ++c, channel += lines * line) {
    for (std::ptrdiff_t low = 0, high = lines - 1; low < high; ++low, --high) {
      std::swap_ranges(channel + low * line, channel + (low + 1) * line, channel + high * line);
    }
  }
}

ZUMRaster::ZUMRaster(const ZUMRegionOfDefinition& rod, int csz, ZUMPixelType type, void* data)
    : raster_(rod.EmptyP() ? MakeEmptyBlock(type)
                           : MakeBlock(rod.Rect(), ZUMRect(), csz, type, data)),
      csz_(csz) {
  if (!rod.EmptyP()) mp_ = rod.Begin();
}

ZUMRaster::ZUMRaster(const ZUMRegionOfDefinition& rod, const ZUMRect& frame, int csz,
                     ZUMPixelType type, void* data)
    : raster_(MakeBlock(RequirePoints(rod).Rect(), frame, csz, type, data)),
      csz_(csz),
      mp_(rod.Begin()) {
  SubMP(frame.begin);
}

ZUMRaster::ZUMRaster(const ZUMRect& box, int csz, ZUMPixelType type, void* data)
    : ZUMRaster(ZUMRoDRect(box), csz, type, data) {}

ZUMRaster::ZUMRaster(const ZUMRaster& other)
    : raster_(other.raster_), csz_(other.csz_), mp_(other.mp_), mpc_(other.mpc_) {
  raster_->Link();
}

ZUMRaster::ZUMRaster(const ZUMRaster& other, int c, int csz)
    : raster_(other.raster_), csz_(csz), mp_(other.mp_) {
  if (c < 0 || csz < 1 || csz > other.csz_ - c) {
    throw XQException("ZUMRaster: channel cut not allowed c=%d, csz=%d, raster CSz=%d", c, csz,
                      other.csz_);
  }
  mpc_ = other.mpc_ - c;
  raster_->Link();
}

ZUMRaster& ZUMRaster::operator=(const ZUMRaster& other) {
  if (raster_ != other.raster_) {
    other.raster_->Link();
    raster_->Unlink();
    raster_ = other.raster_;
  }
  csz_ = other.csz_;
  mp_ = other.mp_;
  mpc_ = other.mpc_;
  return *this;
}

ZUMBasePoint<int> ZUMRaster::AddressCoord(const void* p) const {
  int c;
  return AddressCoord(p, c);
}

ZUMBasePoint<int> ZUMRaster::AddressCoord(const void* p, int& c) const {
  using zuml_detail::WrapSum;
  std::ptrdiff_t e =
      (static_cast<const char*>(p) - static_cast<const char*>(GetData())) / raster_->GetPixSz();
  const auto take = [&e](int size) {
    const int coordinate = static_cast<int>(e % size);
    e /= size;
    return coordinate;
  };
  ZUMBasePoint<int> point;
  point.x = WrapSum(take(GetXSz()), mp_.x);
  point.y = WrapSum(take(GetYSz()), mp_.y);
  point.z = WrapSum(take(GetZSz()), mp_.z);
  point.t = WrapSum(take(GetTSz()), mp_.t);
  c = static_cast<int>(e) + mpc_;
  return point;
}
