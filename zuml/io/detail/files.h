/// What the readers and writers of files share: handles that close themselves, reads that leave no
/// byte undefined, the fields of headers, and the limits that a header's sizes are held to.
#pragma once

#include <sys/stat.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <memory>
#include <type_traits>

namespace zuml_detail {

struct CloseHandle {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

/// An open file; closed on every path.
using FileHandle = std::unique_ptr<std::FILE, CloseHandle>;

/// Opens a file as fopen does; null where that fails. A folder, which fopen opens for reading
/// though nothing can be read from it, counts as a file that cannot be opened.
inline FileHandle OpenFile(const char* path, const char* mode) {
  FileHandle file(path ? std::fopen(path, mode) : nullptr);
  struct stat status {};
  if (file && fstat(fileno(file.get()), &status) == 0 && S_ISDIR(status.st_mode)) file.reset();
  return file;
}

/// The length of a pipe or a device: it may deliver any number of bytes.
inline constexpr std::int64_t kUnknownLength = std::numeric_limits<std::int64_t>::max();

/// The bytes of an open file.
inline std::int64_t GetFileSize(int descriptor) {
  struct stat status {};
  const bool known = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
  return known ? status.st_size : kUnknownLength;
}
inline std::int64_t GetFileSize(std::FILE* file) { return GetFileSize(fileno(file)); }

/// Passes over n bytes, also where the file cannot be positioned; bytes behind its end count as
/// passed over.
inline void SkipBytes(std::FILE* file, std::int64_t n) {
  if (n <= 0 || fseeko(file, static_cast<off_t>(n), SEEK_CUR) == 0) return;
  char bytes[4096];
  while (n > 0) {
    const auto piece = static_cast<std::size_t>(std::min<std::int64_t>(n, sizeof bytes));
    if (std::fread(bytes, 1, piece, file) < piece) return;
    n -= static_cast<std::int64_t>(piece);
  }
}

/// Reads n bytes and returns how many the file delivered; the others become 0.
inline std::size_t ReadOrClear(std::FILE* file, void* to, std::size_t n) {
  const std::size_t delivered = std::fread(to, 1, n, file);
  std::memset(static_cast<char*>(to) + delivered, 0, n - delivered);
  return delivered;
}

/// Whether everything written has reached the file, which is closed whatever the answer. A full
/// disk shows only here: until then the last bytes lie in the handle's buffer.
[[nodiscard]] inline bool FinishFile(FileHandle& file) {
  const bool written = std::fflush(file.get()) == 0 && std::ferror(file.get()) == 0;
  return std::fclose(file.release()) == 0 && written;
}

// Headers hold little-endian fields, and so does this machine.
static_assert(std::endian::native == std::endian::little);

/// A field of a header, at any alignment.
template <class T>
T LoadField(const void* at) {
  static_assert(std::is_trivially_copyable_v<T>);
  T value;
  std::memcpy(&value, at, sizeof(T));
  return value;
}

/// Writes a field of a header and returns the address behind it. T is named by the caller, so that
/// no field takes the size of an expression by chance.
template <class T>
unsigned char* StoreField(unsigned char* at, std::type_identity_t<T> value) {
  std::memcpy(at, &value, sizeof(T));
  return at + sizeof(T);
}

/// The most bytes that a block of pixels can have.
inline constexpr std::int64_t kMostBlockBytes = std::numeric_limits<std::int32_t>::max();

/// The product of sizes from a header; -1 if one is negative or the product is beyond a block.
constexpr std::int64_t GetBlockBytes(std::initializer_list<std::int64_t> sizes) {
  std::int64_t bytes = 1;
  for (const std::int64_t size : sizes) {
    if (size < 0) return -1;
    if (size > kMostBlockBytes || (bytes *= size) > kMostBlockBytes) bytes = kMostBlockBytes + 1;
    if (size == 0) return 0;
  }
  return bytes > kMostBlockBytes ? -1 : bytes;
}

// A file that was cut short is read as far as it goes, so a header may announce more than the file
// holds. It may not take memory at will: beyond some megabytes the file must hold a fair part.
inline constexpr std::int64_t kFreeBytes = std::int64_t{64} << 20;
inline constexpr std::int64_t kMostFileFactor = 16;

/// Whether a picture of that many bytes may be made from a file of that many bytes, or of unknown
/// length.
constexpr bool CanFill(std::int64_t picture_bytes, std::int64_t file_bytes) {
  return picture_bytes <= kFreeBytes || picture_bytes / kMostFileFactor <= file_bytes;
}

}  // namespace zuml_detail
