#pragma once

#include <atomic>
#include <exception>

#include "zuml/core/export.h"
#include "zuml/core/xqexception.h"

namespace zuml_detail {
class TaskPool;
}

/// A piece of work for another thread. A derived class overrides Run, which reads its inputs from
/// the object's own members; the caller makes a few objects on its stack, sends them all, and then
/// waits for each:
///
///     CTaskSum tasks[2];
///     ... give each its input ...
///     for (CTaskSum& task : tasks) task.Send();
///     for (CTaskSum& task : tasks) {
///       if (XQException* failure = task.Wait()) ...
///     }
///
/// The library keeps one set of worker threads, started when they are first needed. A caller that
/// waits runs its own queued objects meanwhile, so tasks may call operations that send tasks, to
/// any depth, and a small operation does not pay for waking a thread. Objects may be sent from any
/// number of threads; each object is handled by one thread at a time. Tasks must not wait for one
/// another in any other way than through Wait, since two of them may run one after the other.
///
/// Wait for every object that was sent before it is destroyed: the members of the derived class are
/// gone before this class can notice that Run is using them.
class ZUML_API XQTask {
 public:
  XQTask() noexcept {}
  XQTask(const XQTask&) = delete;
  XQTask& operator=(const XQTask&) = delete;
  virtual ~XQTask();

  /// The work. Whatever it throws is caught and kept for Wait.
  virtual void Run() = 0;

  /// Hands the object to a worker thread and returns at once; Run goes on there. An object may be
  /// sent again: its earlier failure is forgotten, and where nobody has waited for the earlier run
  /// yet, this waits for it first. Takes no memory and cannot fail.
  void Send() noexcept;

  /// As Send, but wakes no thread for it: a worker takes the object only if one is at hand anyway.
  /// For work of a few microseconds whose caller waits at once.
  void SendLazily() noexcept;

  /// Blocks until Run has ended; runs it in the calling thread if no worker has begun with it.
  ///
  /// Returns null if Run ended normally, or if the object was never sent; else the exception that
  /// left it, which belongs to this object and lasts until it is sent again or destroyed. Waiting
  /// again gives the same answer. An XQException is kept as it is, with its derived class; another
  /// std::exception becomes an XQException with its text, anything else one with the text
  /// "unknown exception"; "out of memory" stands in where there is no memory for that.
  XQException* Wait() noexcept;

  /// The number of tasks that an operation divides its work into, 1 to 32: the number of processors
  /// that the process may use, unless SetNThreads has chosen another one.
  static int GetNThreads() noexcept;

  /// Chooses the number of tasks of all operations from now on. Values outside 1 to 32 go to the
  /// nearer end; 0 returns to the number of processors.
  static void SetNThreads(int n) noexcept;

 private:
  friend class zuml_detail::TaskPool;

  enum class State : int {
    kIdle,     // never sent
    kQueued,   // in the pool's queue
    kRunning,  // a thread runs it, nobody sleeps for it
    kAwaited,  // a thread runs it, another sleeps until it has ended
    kDone      // has run
  };

  void Push(bool wake) noexcept;
  void RunAndKeepFailure() noexcept;
  void KeepFailure(const char* text) noexcept;

  std::atomic<State> state_{State::kIdle};
  // The queue's links and the sender's mark belong to the pool's lock while the object is queued.
  XQTask* previous_ = nullptr;
  XQTask* next_ = nullptr;
  const void* sender_ = nullptr;
  // The failure that Wait returns, and what keeps it alive.
  XQException* failure_ = nullptr;
  std::exception_ptr keeper_;
};
