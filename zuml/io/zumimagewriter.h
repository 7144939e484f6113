/// Writing of image sequences in the background.
#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// An image in the queue of a CAsyncImageWriter, which alone makes and deletes them. It shares the
/// caller's pixels.
class ZUML_API CImageToWrite {
 public:
  CImageToWrite(const CImageToWrite&) = default;
  CImageToWrite& operator=(const CImageToWrite&) = default;

  /// Writes the image with ZUMWriteBMP.
  void WriteImage() const;

 private:
  friend class CAsyncImageWriter;

  CImageToWrite(const char* file_path, ZUMImage<ZUMByte>& shared_image)
      : path(file_path), image(shared_image) {}
  ~CImageToWrite() = default;

  std::string path;
  ZUMImage<ZUMByte> image;
  CImageToWrite* next = nullptr;
};

/// Writes byte images to BMP files, in the order in which they come, in a thread of its own: a
/// capture loop hands them over and goes on at once.
///
///     CAsyncImageWriter writer;
///     while (Capture(image)) writer.PutImage(NextPath(), ZUMCopy(image));
///     writer.Wait();
///
/// Nobody may change the pixels of an image before it is written. The queue has no limit: a disk
/// that is too slow fills the memory.
///
/// A write that fails ends the work of this writer. "Error en FileWriter: " and the failure's text
/// go to the diagnostics, no further file is written, images that wait are released and so is every
/// one that still comes, and Wait no longer blocks. The diagnostics also tell when the thread
/// begins ("Iniciar escritor en fichero") and ends ("Finalizar thread de escritura en fichero").
///
/// All members may be called from any number of threads.
class ZUML_API CAsyncImageWriter {
 public:
  /// Starts the thread. Throws XQException "CAsyncImageWriter: %s" if the system has none left.
  CAsyncImageWriter();
  CAsyncImageWriter(const CAsyncImageWriter&) = delete;
  CAsyncImageWriter& operator=(const CAsyncImageWriter&) = delete;
  /// Blocks until all images in the queue are written.
  ~CAsyncImageWriter();

  /// Appends an image to the queue. It takes no copy of the pixels.
  void PutImage(const char* path, ZUMImage<ZUMByte> image);

  /// Whether the queue is empty. The image that is being written is no longer in it: Wait is the
  /// test for all being written.
  bool IsEmptyP() const;

  /// Blocks until every image is written, and, after SetWaitNewImage(true), until one has come.
  void Wait();

  /// Tells Wait that an image is on its way, though the queue may be empty; PutImage takes that
  /// back, and so does false. False lets Wait return wherever the queue is empty, even while the
  /// last image is being written.
  void SetWaitNewImage(bool wait);

 private:
  struct DeleteImage;

  void PushImage(CImageToWrite* item);
  // The caller deletes the item; null when the writer is to end.
  CImageToWrite* PopImage();
  void FileWriter();
  static unsigned ThreadFileWriter(void* writer);

  CImageToWrite* head_ = nullptr;
  CImageToWrite* tail_ = nullptr;
  mutable std::mutex mutex_;
  bool wait_new_image_ = false;
  // What Wait waits for. Reset when an image enters an empty queue or is announced.
  bool idle_ = true;
  bool quit_ = false;
  // The thread writes nothing any more.
  bool ended_ = false;
  // Notified when the worker has something to do, and when a caller may have nothing to wait for.
  std::condition_variable image_available_;
  std::condition_variable idle_changed_;
  std::thread thread_;
};

/// An exercise of the writer: puts one grey image of 1920 x 300 pixels 600 times, to the files
/// imsec0000.bmp to imsec0599.bmp of the folder for temporary files, and shows the seconds that
/// queueing and writing took in a message box.
ZUML_API void PruImageWriter();
