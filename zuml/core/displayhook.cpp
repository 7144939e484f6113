#include "zuml/core/displayhook.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <utility>

namespace {

// Never destroyed: an operation of an object that ends with the process may still offer a page.
struct Hook {
  std::atomic<bool> has_output{false};  // so that an operation without a display takes no lock
  std::mutex lock;
  std::shared_ptr<const ZUMPageOutput> output;
};

Hook& GetHook() {
  static Hook* const hook = new Hook;
  return *hook;
}

}  // namespace

ZUMPageOutput ZUMSetPageOutput(ZUMPageOutput output) {
  std::shared_ptr<const ZUMPageOutput> chosen;
  if (output) chosen = std::make_shared<const ZUMPageOutput>(std::move(output));
  Hook& hook = GetHook();
  {
    const std::lock_guard<std::mutex> lock(hook.lock);
    hook.output.swap(chosen);
    hook.has_output = hook.output != nullptr;
  }
  return chosen ? *chosen : ZUMPageOutput();
}

bool ZUMPageOutputP() noexcept { return GetHook().has_output; }

void ZUMShowPage(const char* title, const std::vector<ZUMGenericImage>& images) noexcept {
  if (!ZUMPageOutputP()) return;
  try {
    Hook& hook = GetHook();
    std::shared_ptr<const ZUMPageOutput> output;
    {
      const std::lock_guard<std::mutex> lock(hook.lock);
      output = hook.output;
    }
    // Outside of the lock: the output may call an operation that offers a page itself.
    if (output) (*output)(title, images);
  } catch (...) {
    // A page never stops the work that it shows.
  }
}
