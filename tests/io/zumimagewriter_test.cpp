#include "zuml/io/zumimagewriter.h"

#include <sys/stat.h>

#include <chrono>
#include <future>
#include <regex>

#include "tests/support/tempfiles.h"
#include "tests/support/testimages.h"
#include "zuml/io/rwbmp.h"

namespace {

using namespace zuml_test;

const std::string kBegin = "Iniciar escritor en fichero\n";
const std::string kEnd = "Finalizar thread de escritura en fichero\n";

ZUMImage<ZUMByte> Grey(int value) {
  return {ZUMRect(0, 0, 0, 0, 9, 9, 0, 0), 1, static_cast<ZUMByte>(value)};
}
int Value(const std::string& path) { return ZUMReadBMP(path.c_str())(3, 3); }

// A call of Wait in another thread.
class Waiting {
 public:
  explicit Waiting(CAsyncImageWriter& writer)
      : call_(std::async(std::launch::async, [&writer] { writer.Wait(); })) {}
  // Whether it is still blocked after a while. A slow machine can make this true at most.
  bool IsBlocked(int milliseconds = 30) const {
    return call_.wait_for(std::chrono::milliseconds(milliseconds)) == std::future_status::timeout;
  }
  void Join() { call_.get(); }

 private:
  std::future<void> call_;
};

class ImageWriter : public testing::Test {
 protected:
  // Writing to this file takes until somebody reads it.
  ImageWriter() : pipe_(folder_.Path("pipe.bmp")) { mkfifo(pipe_.c_str(), 0600); }

  TempFolder folder_;
  std::string pipe_;
  CapturedDiagnostics diagnostics_;
};

TEST_F(ImageWriter, DestructionWritesWhatIsQueuedInOrder) {
  std::future<std::string> drained;
  {
    CAsyncImageWriter writer;
    writer.Wait();
    EXPECT_TRUE(writer.IsEmptyP());
    writer.PutImage(pipe_.c_str(), Grey(1));
    for (int i = 0; i < 30; ++i) {
      writer.PutImage(folder_.Path("last.bmp").c_str(), Grey(i));
      writer.PutImage(folder_.Path(std::to_string(i)).c_str(), Grey(100 + i));
    }
    EXPECT_FALSE(writer.IsEmptyP());
    drained = std::async(std::launch::async, [&] { return ReadFile(pipe_); });
  }
  EXPECT_EQ(drained.get().size(), 1078u + 120);
  for (int i = 0; i < 30; ++i) EXPECT_EQ(Value(folder_.Path(std::to_string(i))), 100 + i);
  EXPECT_EQ(Value(folder_.Path("last.bmp")), 29);
  EXPECT_EQ(diagnostics_.Text(), kBegin + kEnd);
}

TEST_F(ImageWriter, WaitLastsUntilTheLastImageIsWritten) {
  CAsyncImageWriter writer;
  writer.PutImage(pipe_.c_str(), Grey(1));
  while (!writer.IsEmptyP()) std::this_thread::yield();
  Waiting waiting(writer);
  EXPECT_TRUE(waiting.IsBlocked());
  EXPECT_TRUE(writer.IsEmptyP());
  // Unless the caller says that nothing comes: the queue is empty.
  writer.SetWaitNewImage(false);
  EXPECT_FALSE(waiting.IsBlocked(10000));
  ReadFile(pipe_);
  waiting.Join();
}

TEST_F(ImageWriter, AnAnnouncedImageIsWaitedFor) {
  const std::string path = folder_.Path("image.bmp");
  CAsyncImageWriter writer;
  for (const bool comes : {true, false}) {
    writer.SetWaitNewImage(true);
    Waiting waiting(writer);
    EXPECT_TRUE(waiting.IsBlocked());
    if (comes) {
      writer.PutImage(path.c_str(), Grey(7));
    } else {
      writer.SetWaitNewImage(false);
    }
    waiting.Join();
    EXPECT_EQ(Value(path), 7);
  }
}

TEST_F(ImageWriter, AFailedWriteEndsTheWork) {
  const std::string bad = folder_.Path("no/image.bmp"), late = folder_.Path("late.bmp");
  {
    CAsyncImageWriter writer;
    writer.PutImage(pipe_.c_str(), Grey(1));
    writer.PutImage(bad.c_str(), Grey(2));
    writer.PutImage(late.c_str(), Grey(3));
    ReadFile(pipe_);
    writer.Wait();
    writer.PutImage(late.c_str(), Grey(4));
    EXPECT_TRUE(writer.IsEmptyP());
    writer.SetWaitNewImage(true);
    writer.Wait();
  }
  EXPECT_FALSE(std::filesystem::exists(late));
  EXPECT_EQ(diagnostics_.Text(),
            kBegin + "Error en FileWriter: error when open file \"" + bad + "\"\n" + kEnd);
}

TEST_F(ImageWriter, ManyThreadsPut) {
  CAsyncImageWriter writer;
  std::vector<std::future<void>> callers;
  for (int i = 0; i < 4; ++i) {
    callers.push_back(std::async(std::launch::async, [&, i] {
      for (int k = 0; k < 25; ++k) {
        writer.SetWaitNewImage(true);
        writer.PutImage(folder_.Path(std::to_string(100 * i + k)).c_str(), Grey(5));
        if (k % 8 == 0) writer.Wait();
      }
    }));
  }
  for (auto& caller : callers) caller.get();
  writer.Wait();
  EXPECT_EQ(CountFiles(folder_.Path()), 101);
}

// All files but the first and the last go nowhere, so that the exercise fills no disk.
TEST_F(ImageWriter, TheExerciseWritesItsSequenceAndTellsTheTimes) {
  const auto path = [&](int i) {
    return folder_.Path("imsec0" + std::to_string(1000 + i).substr(1));
  };
  for (int i = 1; i < 599; ++i) std::filesystem::create_symlink("/dev/null", path(i) + ".bmp");
  const char* const set = std::getenv("TMPDIR");
  const std::string earlier = set ? set : "";
  setenv("TMPDIR", folder_.Path().c_str(), 1);
  std::string message;
  const XQTextOutput output = XQSetMessageBoxOutput([&](const char* text) { message += text; });
  PruImageWriter();
  XQSetMessageBoxOutput(output);
  set ? setenv("TMPDIR", earlier.c_str(), 1) : unsetenv("TMPDIR");

  const std::string seconds = "[0-9]+\\.[0-9]{6}";
  EXPECT_TRUE(std::regex_match(message, std::regex("Tiempo de poner en cola " + seconds +
                                                   ", tiempo de escritura " + seconds)))
      << message;
  EXPECT_EQ(diagnostics_.Text(), kBegin + kEnd);
  const ZUMImage<ZUMByte> zeros(ZUMRect(0, 0, 0, 0, 1919, 299, 0, 0), 1, ZUMByte{0});
  for (const int i : {0, 599}) {
    EXPECT_TRUE(SameImage(ZUMReadBMP((path(i) + ".bmp").c_str()), zeros));
  }
  EXPECT_EQ(CountFiles(folder_.Path()), 601);
}

}  // namespace
