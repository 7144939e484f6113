/// Files for tests of readers and writers: a folder that goes away, whole files in one call,
/// damaged copies of good files, and the number of open handles.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <string>

namespace zuml_test {

/// A new folder, removed with all that is in it.
class TempFolder {
 public:
  TempFolder() : path_((std::filesystem::temp_directory_path() / "zuml_test_XXXXXX").string()) {
    if (!mkdtemp(path_.data())) ADD_FAILURE() << "no folder for temporary files";
  }
  ~TempFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::string Path(const std::string& name = "") const { return path_ + "/" + name; }

  /// Writes a file and returns its path. It is a new one each time: file systems may flush a file
  /// to the disk when it is written over.
  std::string Write(const std::string& name, const std::string& bytes) const {
    std::filesystem::remove(Path(name));
    std::ofstream(Path(name), std::ios::binary) << bytes;
    return Path(name);
  }

 private:
  std::string path_;
};

inline std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline auto CountFiles(const std::string& folder) {
  const std::filesystem::directory_iterator files(folder);
  return std::distance(begin(files), end(files));
}

/// The number of handles that the process has open.
inline auto CountHandles() { return CountFiles("/proc/self/fd"); }

/// Calls f with copies in which one of the first n bytes is changed: to the ends of its range and
/// to neighbours of its value.
template <class F>
void ForEachCorruption(const std::string& bytes, std::size_t n, F f) {
  for (std::size_t i = 0; i < std::min(n, bytes.size()); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    for (const int value : {0, 0x7F, 0x80, 0xFF, byte ^ 1}) {
      std::string damaged = bytes;
      damaged[i] = static_cast<char>(value);
      f(damaged);
    }
  }
}

}  // namespace zuml_test
