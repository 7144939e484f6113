#include "zuml/core/xqtask.h"

#include <pthread.h>
#include <sched.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <new>
#include <utility>

namespace {

constexpr int kMostThreads = 32;
/// How long a thread looks for news before it sleeps: as long as it takes to wake it again.
constexpr std::chrono::microseconds kSpinTime{50};

int CountProcessors() noexcept {
  cpu_set_t set;
  // A machine with more processors than the set holds refuses; its number is beyond ours anyway.
  const long count =
      sched_getaffinity(0, sizeof set, &set) == 0 ? CPU_COUNT(&set) : sysconf(_SC_NPROCESSORS_ONLN);
  return static_cast<int>(std::clamp(count, 1L, long{kMostThreads}));
}

int GetProcessors() noexcept {
  static const int processors = CountProcessors();
  return processors;
}

/// What SetNThreads chose, 0 for the number of processors.
constinit std::atomic<int> chosen_threads{0};

/// True in the threads of the pool. Its address marks the objects that a thread has sent.
constinit thread_local bool is_worker = false;

void Pause() noexcept {
#ifdef __x86_64__
  __builtin_ia32_pause();
#endif
}

/// Looks at a condition for a while without sleeping; true once it holds. With one processor, the
/// other thread could not make it hold meanwhile; with more, it may still have been put on this
/// thread's own, hence the yield: without it, a woken worker kept the caller from going on for the
/// whole time now and then.
template <class Condition>
bool SpinUntil(Condition condition) noexcept {
  if (GetProcessors() == 1) return condition();
  const auto end = std::chrono::steady_clock::now() + kSpinTime;
  do {
    for (int i = 0; i < 16; ++i) {
      if (condition()) return true;
      Pause();
    }
    sched_yield();
  } while (std::chrono::steady_clock::now() < end);
  return condition();
}

XQException MakeOutOfMemory() noexcept {
  try {
    return XQException("out of memory");
  } catch (...) {
    return XQException();
  }
}

}  // namespace

namespace zuml_detail {

/// The queue of sent objects and the threads that serve it. There is one, which is never destroyed,
/// so that objects that live as long as the process can still be sent and waited for; at the end of
/// the process its threads are joined, and from then on callers run their objects themselves.
///
/// The lock guards the queue and the counts. An object may be destroyed as soon as its state says
/// that it has run, so whoever ran it does not touch it after that: sleepers wait for the pool's
/// condition variables, not for one in the object.
class TaskPool {
 public:
  static TaskPool& Get() noexcept;

  /// Sees to it that a fork leaves a pool that works in both processes.
  static int HandleForks() noexcept {
    return pthread_atfork([] { Get().mutex_.lock(); }, [] { Get().mutex_.unlock(); },
                          [] { Get().ForgetWorkers(); });
  }

  void Push(XQTask& task, bool wake) noexcept;

  /// Takes the object out of the queue, so that no other thread runs it; false if one has begun.
  bool TakeOut(XQTask& task) noexcept;

  /// Runs an object that was taken out of the queue.
  void Run(XQTask& task) noexcept;

  /// Blocks until an object that runs in another thread has ended.
  void AwaitEnd(XQTask& task) noexcept;

  XQException* GetOutOfMemory() noexcept { return &out_of_memory_; }

 private:
  using State = XQTask::State;

  TaskPool() = default;
  ~TaskPool() = default;

  std::unique_lock<std::mutex> Lock() noexcept;
  void Unlink(XQTask& task) noexcept;
  void Link(XQTask& task) noexcept;
  XQTask* TakeFirst() noexcept;
  XQTask* TakeOwn() noexcept;
  bool CallWorker() noexcept;
  void StartWorker() noexcept;
  void Serve() noexcept;
  void Stop() noexcept;
  void ForgetWorkers() noexcept;

  std::mutex mutex_;
  std::condition_variable work_;   // for workers: there is something to do
  std::condition_variable ended_;  // for callers: an object that somebody sleeps for has run

  XQTask* first_ = nullptr;
  XQTask* last_ = nullptr;
  // Written under the lock; read without it by threads that spin.
  std::atomic<int> queued_{0};
  std::atomic<bool> stopping_{false};

  std::array<pthread_t, kMostThreads - 1> workers_{};
  int n_workers_ = 0;
  int spinning_ = 0;  // workers that look for work without sleeping
  int sleeping_ = 0;  // workers asleep that nobody has called
  int called_ = 0;    // workers that were called and have not woken yet
  int starting_ = 0;  // workers that were started and have not arrived yet

  XQException out_of_memory_ = MakeOutOfMemory();
};

TaskPool& TaskPool::Get() noexcept {
  alignas(TaskPool) static std::byte storage[sizeof(TaskPool)];
  static TaskPool* const pool = new (storage) TaskPool;
  static const struct AtEnd {
    ~AtEnd() { Get().Stop(); }
  } at_end;
  return *pool;
}

namespace {

// From load time on, so that no fork falls into the making of the pool.
const int fork_handlers = TaskPool::HandleForks();

}  // namespace

/// The lock is held for a few instructions only, so it is worth looking twice before sleeping.
std::unique_lock<std::mutex> TaskPool::Lock() noexcept {
  std::unique_lock<std::mutex> lock(mutex_, std::defer_lock);
  for (int i = 0; i < 32; ++i) {
    if (lock.try_lock()) return lock;
    Pause();
  }
  lock.lock();
  return lock;
}

void TaskPool::Link(XQTask& task) noexcept {
  task.previous_ = last_;
  task.next_ = nullptr;
  (last_ ? last_->next_ : first_) = &task;
  last_ = &task;
  queued_.store(queued_.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

void TaskPool::Unlink(XQTask& task) noexcept {
  (task.previous_ ? task.previous_->next_ : first_) = task.next_;
  (task.next_ ? task.next_->previous_ : last_) = task.previous_;
  queued_.store(queued_.load(std::memory_order_relaxed) - 1, std::memory_order_relaxed);
  task.state_.store(State::kRunning, std::memory_order_relaxed);
}

void TaskPool::Push(XQTask& task, bool wake) noexcept {
  bool notify = false;
  {
    const std::unique_lock<std::mutex> lock = Lock();
    task.state_.store(State::kQueued, std::memory_order_relaxed);
    task.sender_ = &is_worker;
    Link(task);
    if (wake) notify = CallWorker();
  }
  if (notify) work_.notify_one();
}

/// Sees to it that a worker comes for the object just queued; true if one is to be notified. A
/// worker that spins comes by itself, and one that is busy looks here before it rests.
bool TaskPool::CallWorker() noexcept {
  if (queued_.load(std::memory_order_relaxed) <= spinning_ + called_ + starting_) return false;
  if (sleeping_ > 0) {
    --sleeping_;
    ++called_;
    return true;
  }
  if (n_workers_ < std::max(1, XQTask::GetNThreads() - 1)) StartWorker();
  return false;
}

/// Where the system refuses a thread, nothing is lost: who waits for the object runs it.
void TaskPool::StartWorker() noexcept {
  if (stopping_.load(std::memory_order_relaxed)) return;
  // Signals are for the application's threads, except those that a thread raises by its own fault.
  sigset_t blocked;
  sigset_t earlier;
  sigfillset(&blocked);
  for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGABRT, SIGSYS, SIGPROF}) {
    sigdelset(&blocked, fault);
  }
  pthread_sigmask(SIG_SETMASK, &blocked, &earlier);
  const auto serve = [](void*) -> void* {
    is_worker = true;
    Get().Serve();
    return nullptr;
  };
  if (pthread_create(&workers_[n_workers_], nullptr, serve, nullptr) == 0) {
    ++n_workers_;
    ++starting_;
  }
  pthread_sigmask(SIG_SETMASK, &earlier, nullptr);
}

/// The life of a worker.
void TaskPool::Serve() noexcept {
  std::unique_lock<std::mutex> lock = Lock();
  --starting_;
  bool has_spun = false;
  while (!stopping_.load(std::memory_order_relaxed)) {
    if (XQTask* const task = TakeFirst()) {
      lock.unlock();
      Run(*task);
      lock = Lock();
      has_spun = false;
    } else if (!has_spun && spinning_ < GetProcessors()) {
      ++spinning_;
      lock.unlock();
      has_spun = !SpinUntil([this] {
        return queued_.load(std::memory_order_relaxed) > 0 ||
               stopping_.load(std::memory_order_relaxed);
      });
      lock = Lock();
      --spinning_;
    } else {
      ++sleeping_;
      work_.wait(lock, [this] { return called_ > 0 || stopping_.load(std::memory_order_relaxed); });
      if (called_ > 0) --called_;
      has_spun = false;
    }
  }
}

XQTask* TaskPool::TakeFirst() noexcept {
  XQTask* const task = first_;
  if (task) Unlink(*task);
  return task;
}

XQTask* TaskPool::TakeOwn() noexcept {
  if (queued_.load(std::memory_order_relaxed) == 0) return nullptr;
  const std::unique_lock<std::mutex> lock = Lock();
  XQTask* task = first_;
  while (task && task->sender_ != &is_worker) task = task->next_;
  if (task) Unlink(*task);
  return task;
}

bool TaskPool::TakeOut(XQTask& task) noexcept {
  const std::unique_lock<std::mutex> lock = Lock();
  if (task.state_.load(std::memory_order_relaxed) != State::kQueued) return false;
  Unlink(task);
  return true;
}

void TaskPool::Run(XQTask& task) noexcept {
  task.RunAndKeepFailure();
  if (task.state_.exchange(State::kDone, std::memory_order_acq_rel) == State::kAwaited) {
    // The sleeper set the state under the lock and holds it until it sleeps.
    { const std::unique_lock<std::mutex> lock = Lock(); }
    ended_.notify_all();
  }
}

void TaskPool::AwaitEnd(XQTask& task) noexcept {
  const auto has_ended = [&task] {
    return task.state_.load(std::memory_order_acquire) == State::kDone;
  };
  // Meanwhile run what else this thread has sent, but no foreign task: that may be long.
  // These are objects of the same operation. The workers take the oldest first, so when one of them
  // has begun with this object, nothing is queued any more that this thread had sent before it.
  while (!has_ended()) {
    XQTask* const own = TakeOwn();
    if (!own) break;
    Run(*own);
  }
  if (SpinUntil(has_ended)) return;
  std::unique_lock<std::mutex> lock = Lock();
  State running = State::kRunning;
  task.state_.compare_exchange_strong(running, State::kAwaited, std::memory_order_acq_rel);
  ended_.wait(lock, has_ended);
}

/// The end of the process, or of the library in it.
void TaskPool::Stop() noexcept {
  std::array<pthread_t, kMostThreads - 1> workers;
  int n = 0;
  {
    const std::unique_lock<std::mutex> lock = Lock();
    stopping_.store(true, std::memory_order_relaxed);
    workers = workers_;
    std::swap(n, n_workers_);
    sleeping_ = 0;
  }
  work_.notify_all();
  // A task that ends the process cannot wait for the thread it runs in, nor for one that waits for
  // it.
  if (is_worker) return;
  for (int i = 0; i < n; ++i) pthread_join(workers[i], nullptr);
}

/// The child of a fork has no workers, and the objects of other threads are not its business. The
/// forking thread holds the lock; locks and condition variables are made anew, since the threads
/// that slept in them are gone.
void TaskPool::ForgetWorkers() noexcept {
  XQTask* task = first_;
  TaskPool* const fresh = new (static_cast<void*>(this)) TaskPool;
  while (task) {
    XQTask* const next = task->next_;
    if (task->sender_ == &is_worker) fresh->Link(*task);
    task = next;
  }
  is_worker = false;
}

}  // namespace zuml_detail

using zuml_detail::TaskPool;

XQTask::~XQTask() {
  const State state = state_.load(std::memory_order_acquire);
  if (state == State::kIdle || state == State::kDone) return;
  TaskPool& pool = TaskPool::Get();
  if (!pool.TakeOut(*this)) pool.AwaitEnd(*this);
}

void XQTask::Send() noexcept { Push(true); }

void XQTask::SendLazily() noexcept { Push(false); }

void XQTask::Push(bool wake) noexcept {
  Wait();
  failure_ = nullptr;
  keeper_ = nullptr;
  TaskPool::Get().Push(*this, wake);
}

XQException* XQTask::Wait() noexcept {
  const State state = state_.load(std::memory_order_acquire);
  if (state == State::kIdle || state == State::kDone) return failure_;
  TaskPool& pool = TaskPool::Get();
  if (pool.TakeOut(*this)) {
    pool.Run(*this);
  } else {
    pool.AwaitEnd(*this);
  }
  return failure_;
}

/// What is caught here has been let go again when this returns, so that the thread that waits is
/// the only one left that holds it.
void XQTask::RunAndKeepFailure() noexcept {
  try {
    Run();
  } catch (XQException& failure) {
    failure_ = &failure;
    keeper_ = std::current_exception();
  } catch (const std::exception& failure) {
    KeepFailure(failure.what());
  } catch (...) {
    KeepFailure("unknown exception");
  }
}

void XQTask::KeepFailure(const char* text) noexcept {
  try {
    throw XQException("%s", text);
  } catch (XQException& failure) {
    failure_ = &failure;
    keeper_ = std::current_exception();
  } catch (...) {
    failure_ = TaskPool::Get().GetOutOfMemory();
  }
}

int XQTask::GetNThreads() noexcept {
  const int chosen = chosen_threads.load(std::memory_order_relaxed);
  return chosen != 0 ? chosen : GetProcessors();
}

void XQTask::SetNThreads(int n) noexcept {
  chosen_threads.store(n == 0 ? 0 : std::clamp(n, 1, kMostThreads), std::memory_order_relaxed);
}
