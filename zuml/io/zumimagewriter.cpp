#include "zuml/io/zumimagewriter.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "zuml/core/xqdiagnostics.h"
#include "zuml/core/xqexception.h"
#include "zuml/io/rwbmp.h"

struct CAsyncImageWriter::DeleteImage {
  void operator()(CImageToWrite* item) const noexcept { delete item; }
};

void CImageToWrite::WriteImage() const { ZUMWriteBMP(image, path.c_str()); }

CAsyncImageWriter::CAsyncImageWriter() {
  try {
    thread_ = std::thread(ThreadFileWriter, this);
  } catch (const std::system_error& error) {
    throw XQException("CAsyncImageWriter: %s", error.what());
  }
}

CAsyncImageWriter::~CAsyncImageWriter() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    quit_ = true;
  }
  image_available_.notify_one();
  thread_.join();
}

void CAsyncImageWriter::PutImage(const char* path, ZUMImage<ZUMByte> image) {
  PushImage(new CImageToWrite(path, image));
}

void CAsyncImageWriter::PushImage(CImageToWrite* item) {
  std::unique_ptr<CImageToWrite, DeleteImage> unwanted(item);
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    wait_new_image_ = false;
    if (ended_) return;
    unwanted.release();
    if (!head_) idle_ = false;
    (head_ ? tail_->next : head_) = item;
    tail_ = item;
  }
  image_available_.notify_one();
}

CImageToWrite* CAsyncImageWriter::PopImage() {
  std::unique_lock<std::mutex> lock(mutex_);
  if (!head_ && !wait_new_image_) {
    idle_ = true;
    idle_changed_.notify_all();
  }
  // All that was put is written before the end is looked at.
  image_available_.wait(lock, [this] { return head_ || quit_; });
  if (!head_) return nullptr;
  CImageToWrite* const item = head_;
  head_ = item->next;
  return item;
}

void CAsyncImageWriter::FileWriter() {
  using Item = std::unique_ptr<CImageToWrite, DeleteImage>;
  for (Item item(PopImage()); item; item.reset(PopImage())) item->WriteImage();
}

unsigned CAsyncImageWriter::ThreadFileWriter(void* writer) {
  auto& self = *static_cast<CAsyncImageWriter*>(writer);
  XQDiagnostic("Iniciar escritor en fichero\n");
  try {
    self.FileWriter();
  } catch (const std::exception& failure) {
    XQDiagnosticF("Error en FileWriter: %s\n", failure.what());
  }
  XQDiagnostic("Finalizar thread de escritura en fichero\n");
  CImageToWrite* item;
  {
    const std::lock_guard<std::mutex> lock(self.mutex_);
    self.ended_ = true;
    item = self.head_;
    self.head_ = nullptr;
    self.idle_changed_.notify_all();
  }
  while (item) delete std::exchange(item, item->next);
  return 0;
}

bool CAsyncImageWriter::IsEmptyP() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return !head_;
}

void CAsyncImageWriter::Wait() {
  std::unique_lock<std::mutex> lock(mutex_);
  idle_changed_.wait(lock, [this] { return idle_ || ended_; });
}

void CAsyncImageWriter::SetWaitNewImage(bool wait) {
  const std::lock_guard<std::mutex> lock(mutex_);
  wait_new_image_ = wait;
  if (wait || !head_) idle_ = !wait;
  if (idle_) idle_changed_.notify_all();
}

void PruImageWriter() {
  std::error_code error;
  std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  if (error) folder = "/tmp";
  const double start = XQClock();
  double queued;
  {
    CAsyncImageWriter writer;
    const ZUMImage<ZUMByte> image(ZUMRoDRef(0, 0, 0, 0, 1919, 299, 0, 0), 1, ZUMByte{0});
    for (int i = 0; i < 600; ++i) {
      char name[32];
      std::snprintf(name, sizeof name, "imsec%04d.bmp", i);
      writer.PutImage((folder / name).c_str(), image);
    }
    queued = XQClock();
  }
  XQMessageFBox("Tiempo de poner en cola %f, tiempo de escritura %f", queued - start,
                XQClock() - start);
}
