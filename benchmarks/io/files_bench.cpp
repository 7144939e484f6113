// Image files of 1024 x 1024 pixels against plain transfers of as many bytes. Set TMPDIR to a
// folder in memory to leave the disk out of it.

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "benchmarks/support/pairs.h"
#include "zuml/io/rwbmp.h"
#include "zuml/io/zmg.h"

namespace {

// A file that goes away with the program.
class File {
 public:
  explicit File(const std::string& name)
      : path_(std::filesystem::temp_directory_path() / (std::to_string(getpid()) + name)) {}
  ~File() { std::filesystem::remove(path_); }

  const char* Path() const { return path_.c_str(); }

 private:
  std::filesystem::path path_;
};

void WritePlain(const char* path, const ZUMImage<ZUMByte>& image) {
  std::FILE* const file = std::fopen(path, "wb");
  std::fwrite(image.GetData(), 1, static_cast<std::size_t>(image.GetRasterSz()), file);
  std::fclose(file);
}

void ReadPlain(const char* path, int channels) {
  const ZUMImage<ZUMByte> image(ZUMRoDRef(0, 0, 0, 0, 1023, 1023, 0, 0), channels, nullptr);
  const auto bytes = static_cast<std::size_t>(image.GetRasterSz());
  std::FILE* const file = std::fopen(path, "rb");
  if (std::fread(image.GetData(), 1, bytes, file) != bytes) std::abort();
  std::fclose(file);
}

template <class Write, class Read>
void Register(const std::string& format, int channels, Write write, Read read) {
  const std::string name = format + "/" + std::to_string(channels);
  const auto ours = std::make_shared<File>(format + std::to_string(channels));
  const auto plain = std::make_shared<File>(format + std::to_string(channels) + "plain");
  const ZUMImage<ZUMByte> image(ZUMRect(0, 0, 0, 0, 1023, 1023, 0, 0), channels, ZUMByte{100});
  constexpr double kPixels = 1024 * 1024;
  // Each pair writes its files itself, since any one of them may be run alone.
  zuml_bench::Pair(
      "write " + name, kPixels, 1, [=] { write(image, ours->Path()); },
      [=] { WritePlain(plain->Path(), image); });
  const auto prepare = [=] {
    if (std::filesystem::exists(ours->Path()) && std::filesystem::exists(plain->Path())) return;
    write(image, ours->Path());
    WritePlain(plain->Path(), image);
  };
  zuml_bench::Pair(
      "read " + name, kPixels, 1,
      [=] {
        prepare();
        benchmark::DoNotOptimize(read(ours->Path()));
      },
      [=] {
        prepare();
        ReadPlain(plain->Path(), channels);
      });
}

const bool registered = [] {
  for (const int channels : {1, 3}) {
    Register(
        "zmg", channels,
        [](const ZUMImage<ZUMByte>& image, const char* path) { ZUMWriteZMG(image, path, false); },
        [](const char* path) { return ZUMReadZMG(path); });
    Register("bmp", channels, ZUMWriteBMP, ZUMReadBMP);
  }
  return true;
}();

}  // namespace
