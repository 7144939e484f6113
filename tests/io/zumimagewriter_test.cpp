#include "zuml/io/zumimagewriter.h"

#include <sys/stat.h>

#include <chrono>
#include <future>

#include "tests/io/filetest.h"
#include "zuml/io/rwbmp.h"

namespace {

using namespace zuml_test;

const std::string kBegin = "Iniciar escritor en fichero\n";
const std::string kEnd = "Finalizar thread de escritura en fichero\n";

int Value(const std::string& path) { return ZUMReadBMP(path.c_str())(3, 3); }

class ImageWriter : public FileTest {
 protected:
  // Writing to the pipe takes until somebody reads it.
  ImageWriter() { mkfifo(Path("pipe").c_str(), 0600); }

  void Put(const std::string& name, int value) {
    writer_->PutImage(Path(name).c_str(), {PictureBox(10, 10), 1, static_cast<ZUMByte>(value)});
  }
  // A call of Wait in another thread, which is blocked.
  std::future<void> StartWaiting() {
    auto call = std::async(std::launch::async, [this] { writer_->Wait(); });
    EXPECT_EQ(call.wait_for(std::chrono::milliseconds(30)), std::future_status::timeout);
    return call;
  }

  std::unique_ptr<CAsyncImageWriter> writer_ = std::make_unique<CAsyncImageWriter>();
};

TEST_F(ImageWriter, DestructionWritesWhatIsQueuedInOrder) {
  writer_->Wait();
  EXPECT_TRUE(writer_->IsEmptyP());
  Put("pipe", 1);
  for (int i = 0; i < 30; ++i) {
    Put("last", i);
    Put(std::to_string(i), 100 + i);
  }
  EXPECT_FALSE(writer_->IsEmptyP());
  auto drained = std::async(std::launch::async, [&] { return ReadFile(Path("pipe")); });
  writer_.reset();
  EXPECT_EQ(drained.get().size(), 1078u + 120);
  for (int i = 0; i < 30; ++i) EXPECT_EQ(Value(Path(std::to_string(i))), 100 + i);
  EXPECT_EQ(Value(Path("last")), 29);
  EXPECT_EQ(diagnostics_.Take(), kBegin + kEnd);
}

TEST_F(ImageWriter, WaitLastsUntilTheLastImageIsWritten) {
  Put("pipe", 1);
  while (!writer_->IsEmptyP()) std::this_thread::yield();
  auto waiting = StartWaiting();
  // Unless the caller says that nothing comes: the queue is empty.
  writer_->SetWaitNewImage(false);
  EXPECT_EQ(waiting.wait_for(std::chrono::seconds(10)), std::future_status::ready);
  ReadFile(Path("pipe"));
  // Or that an image comes.
  writer_->SetWaitNewImage(true);
  auto announced = StartWaiting();
  Put("image", 7);
  announced.get();
  EXPECT_EQ(Value(Path("image")), 7);
}

TEST_F(ImageWriter, AFailedWriteEndsTheWork) {
  Put("pipe", 1);
  Put("no/image", 2);
  Put("late", 3);
  ReadFile(Path("pipe"));
  writer_->Wait();
  Put("late", 4);
  EXPECT_TRUE(writer_->IsEmptyP());
  writer_->SetWaitNewImage(true);
  writer_->Wait();
  writer_.reset();
  EXPECT_FALSE(std::filesystem::exists(Path("late")));
  EXPECT_EQ(diagnostics_.Take(), kBegin + "Error en FileWriter: error when open file \"" +
                                     Path("no/image") + "\"\n" + kEnd);
}

// Only the first and the last file go to the disk.
TEST_F(ImageWriter, TheExerciseWritesItsSequenceAndTellsTheTimes) {
  const auto path = [&](int i) {
    return Path("imsec0" + std::to_string(1000 + i).substr(1) + ".bmp");
  };
  for (int i = 1; i < 599; ++i) std::filesystem::create_symlink("/dev/null", path(i));
  const std::string earlier = std::filesystem::temp_directory_path();
  std::string message;
  const XQTextOutput output = XQSetMessageBoxOutput([&](const char* text) { message += text; });
  setenv("TMPDIR", Path("").c_str(), 1);
  PruImageWriter();
  setenv("TMPDIR", earlier.c_str(), 1);
  XQSetMessageBoxOutput(output);
  EXPECT_TRUE(message.starts_with("Tiempo de poner en cola ")) << message;
  for (const int i : {0, 599}) EXPECT_EQ(Value(path(i)), 0);
  EXPECT_EQ(CountFiles(Path("")), 601);
}

}  // namespace
