/// Pixel storage: a counted block of pixels, and the views that say which coordinates it has and
/// which of its channels are seen.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "zuml/core/export.h"
#include "zuml/core/pixeltypes.h"
#include "zuml/core/zumbasepoint.h"

class ZUMRegionOfDefinition;

namespace zuml_detail {

/// Sums and differences of coordinates modulo 2^32. The margin of a framed raster may lie beyond
/// the ends of 32 bits, and with it the origin; the distance of two points of one raster is below
/// 2^31 and so comes out right.
constexpr int WrapSum(int a, int b) {
  return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}
constexpr int WrapDifference(int a, int b) {
  return static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b));
}

}  // namespace zuml_detail

/// One block of pixels of one type. X runs fastest, then Y, Z, T; channels are planar and
/// outermost, without gaps anywhere. A block is at most 2^31 - 1 bytes.
class ZUML_API ZUMSimpleRaster {
 public:
  /// A block with undefined contents; without memory if a size is 0. Throws XQException
  /// "ZUMSimpleRaster: negative size %lld", or "ZUMSimpleRaster: a block of %lld x %lld x %lld x
  /// %lld pixels with %lld channels of %d bytes is beyond the limit of 2147483647 bytes", also
  /// where a single size is beyond it. Both are found before memory is taken.
  ZUMSimpleRaster(int x, int y, int z, int t, int c, ZUMPixelType type);
  /// Wraps the caller's pixels, which must outlive all views; with null, a block of its own.
  /// Throws as above.
  ZUMSimpleRaster(int x, int y, int z, int t, int c, ZUMPixelType type, void* data);
  ZUMSimpleRaster& operator=(const ZUMSimpleRaster&) = delete;
  ~ZUMSimpleRaster();

  void Link() const noexcept { count_.fetch_add(1, std::memory_order_relaxed); }
  /// Drops one reference; the last one frees the pixels, if they are the block's own, and deletes.
  void Unlink() const noexcept;

  /// Bytes of one pixel; 0 for a value that is not a pixel type.
  static int PixelTypeToSz(ZUMPixelType type);

  ZUMPixelType GetType() const { return type_; }
  int GetPixSz() const { return pix_sz_; }
  int GetXSz() const { return x_sz_; }
  int GetYSz() const { return y_sz_; }
  int GetZSz() const { return z_sz_; }
  int GetTSz() const { return t_sz_; }
  int GetCSz() const { return c_sz_; }
  void* GetData() const { return data_; }

  // Sizes in pixels.
  long long GetLineSz() const { return x_sz_; }
  long long GetPlaneSz() const { return GetLineSz() * y_sz_; }
  long long GetFrameSz() const { return GetPlaneSz() * z_sz_; }
  long long GetChannelSz() const { return GetFrameSz() * t_sz_; }
  long long GetSimpleRasterSz() const { return GetChannelSz() * c_sz_; }

  /// The step from one pixel to the one displaced by (x, y, z, t) and c channels, in pixels.
  int Displacement(int x, int y, int z, int t, int c) const {
    return static_cast<int>(Offset(x, y, z, t, c));
  }
  int Displacement(const ZUMBasePoint<int>& p, int c) const {
    return Displacement(p.x, p.y, p.z, p.t, c);
  }
  /// The same in bytes.
  int ByteDisplacement(int x, int y, int z, int t, int c) const {
    return static_cast<int>(Offset(x, y, z, t, c, pix_sz_));
  }
  int ByteDisplacement(const ZUMBasePoint<int>& p, int c) const {
    return ByteDisplacement(p.x, p.y, p.z, p.t, c);
  }
  /// Whether the address lies in the block.
  bool InRaster(const void* p) const;

  /// Reverses the order of the lines of each channel, all its planes and frames taken as one stack
  /// of lines: with Z or T above 1 the order of planes and frames is reversed too. It acts on the
  /// whole block.
  void FlipY();

 private:
  friend class ZUMRaster;
  ZUMSimpleRaster(const ZUMSimpleRaster&);

  // Modulo 2^64, like an address: steps from an element far outside of the block may exceed it.
  std::ptrdiff_t Offset(int x, int y, int z, int t, int c, int pixel = 1) const {
    const auto wide = [](int a) { return static_cast<std::uint64_t>(std::int64_t{a}); };
    const std::uint64_t frames = wide(c) * wide(t_sz_) + wide(t);
    const std::uint64_t lines = (frames * wide(z_sz_) + wide(z)) * wide(y_sz_) + wide(y);
    return static_cast<std::ptrdiff_t>((lines * wide(x_sz_) + wide(x)) * wide(pixel));
  }

  mutable std::atomic<int> count_{0};
  ZUMPixelType type_;
  int pix_sz_;
  int x_sz_, y_sz_, z_sz_, t_sz_, c_sz_;
  void* data_;
  bool owner_;
};

/// A view on a block: the coordinates MPX..MPT of the block's first pixel, the number of channels
/// seen, and their offset: channel c of the view is channel c - MPC of the block.
///
/// Coordinates count modulo 2^32: where the margin of a framed raster would lie below the least int
/// or above the greatest, it has the coordinates of the other end.
class ZUML_API ZUMRaster {
 public:
  /// A new block over the region. An empty region gives a block of size 0 without data.
  ZUMRaster(const ZUMRegionOfDefinition& rod, int csz, ZUMPixelType type, void* data = nullptr);
  /// A new block over the region widened by a frame of margins. Throws XQException "ZUMRaster: It
  /// is not allowed create a framed raster with an empty RoD".
  ZUMRaster(const ZUMRegionOfDefinition& rod, const ZUMRect& frame, int csz, ZUMPixelType type,
            void* data = nullptr);
  /// A new block over the box; with begin above end on any axis as for an empty region.
  ZUMRaster(const ZUMRect& box, int csz, ZUMPixelType type, void* data = nullptr);
  /// Shares the block.
  ZUMRaster(const ZUMRaster& other);
  /// The view of csz channels of `other` from its channel c on. Throws XQException "ZUMRaster:
  /// channel cut not allowed c=%d, csz=%d, raster CSz=%d".
  ZUMRaster(const ZUMRaster& other, int c, int csz);
  ZUMRaster& operator=(const ZUMRaster& other);
  ~ZUMRaster() { raster_->Unlink(); }

  ZUMSimpleRaster* GetSimpleRaster() const { return raster_; }
  ZUMPixelType GetType() const { return raster_->GetType(); }
  int GetXSz() const { return raster_->GetXSz(); }
  int GetYSz() const { return raster_->GetYSz(); }
  int GetZSz() const { return raster_->GetZSz(); }
  int GetTSz() const { return raster_->GetTSz(); }
  int GetPixSz() const { return raster_->GetPixSz(); }
  /// The block's first byte, whatever the view.
  void* GetData() const { return raster_->GetData(); }
  bool InRaster(const void* p) const { return raster_->InRaster(p); }

  // Sizes in pixels; GetRasterSz counts the channels of the view.
  long long GetLineSz() const { return raster_->GetLineSz(); }
  long long GetPlaneSz() const { return raster_->GetPlaneSz(); }
  long long GetFrameSz() const { return raster_->GetFrameSz(); }
  long long GetChannelSz() const { return raster_->GetChannelSz(); }
  long long GetRasterSz() const { return GetChannelSz() * csz_; }

  int GetCSz() const { return csz_; }
  void SetCSz(int csz) { csz_ = csz; }
  int GetMPX() const { return mp_.x; }
  int GetMPY() const { return mp_.y; }
  int GetMPZ() const { return mp_.z; }
  int GetMPT() const { return mp_.t; }
  int GetMPC() const { return mpc_; }
  void SetMPX(int x) { mp_.x = x; }
  void SetMPY(int y) { mp_.y = y; }
  void SetMPZ(int z) { mp_.z = z; }
  void SetMPT(int t) { mp_.t = t; }
  void SetMPC(int c) { mpc_ = c; }
  // Moving MP translates an image without touching its pixels. The channel offset stays.
  void SetMP(const ZUMBasePoint<int>& p) { mp_ = p; }
  void AddMP(const ZUMBasePoint<int>& p) {
    using zuml_detail::WrapSum;
    mp_ = ZUMBasePoint<int>(WrapSum(mp_.x, p.x), WrapSum(mp_.y, p.y), WrapSum(mp_.z, p.z),
                            WrapSum(mp_.t, p.t));
  }
  void SubMP(const ZUMBasePoint<int>& p) {
    using zuml_detail::WrapDifference;
    mp_ = ZUMBasePoint<int>(WrapDifference(mp_.x, p.x), WrapDifference(mp_.y, p.y),
                            WrapDifference(mp_.z, p.z), WrapDifference(mp_.t, p.t));
  }

  int Displacement(int x, int y, int z, int t, int c) const {
    return raster_->Displacement(x, y, z, t, c);
  }
  int Displacement(const ZUMBasePoint<int>& p, int c) const { return raster_->Displacement(p, c); }
  int ByteDisplacement(int x, int y, int z, int t, int c) const {
    return raster_->ByteDisplacement(x, y, z, t, c);
  }
  int ByteDisplacement(const ZUMBasePoint<int>& p, int c) const {
    return raster_->ByteDisplacement(p, c);
  }
  // The steps of the reflected element.
  int SymmetricDisplacement(int x, int y, int z, int t, int c) const {
    return zuml_detail::WrapDifference(0, Displacement(x, y, z, t, c));
  }
  int SymmetricDisplacement(const ZUMBasePoint<int>& p, int c) const {
    return SymmetricDisplacement(p.x, p.y, p.z, p.t, c);
  }
  int ByteSymmetricDisplacement(int x, int y, int z, int t, int c) const {
    return zuml_detail::WrapDifference(0, ByteDisplacement(x, y, z, t, c));
  }
  int ByteSymmetricDisplacement(const ZUMBasePoint<int>& p, int c) const {
    return ByteSymmetricDisplacement(p.x, p.y, p.z, p.t, c);
  }

  /// Where the pixel lies; coordinates are not tested.
  void* PixelAddress(int x, int y, int z, int t, int c) const {
    using zuml_detail::WrapDifference;
    return static_cast<char*>(raster_->data_) +
           raster_->Offset(WrapDifference(x, mp_.x), WrapDifference(y, mp_.y),
                           WrapDifference(z, mp_.z), WrapDifference(t, mp_.t),
                           WrapDifference(c, mpc_), raster_->pix_sz_);
  }
  void* PixelAddress(const ZUMBasePoint<int>& p, int c) const {
    return PixelAddress(p.x, p.y, p.z, p.t, c);
  }
  /// The inverse of PixelAddress.
  ZUMBasePoint<int> AddressCoord(const void* p) const;
  ZUMBasePoint<int> AddressCoord(const void* p, int& c) const;

  void FlipY() { raster_->FlipY(); }

 private:
  ZUMSimpleRaster* raster_;
  int csz_;
  ZUMBasePoint<int> mp_;
  int mpc_ = 0;
};
