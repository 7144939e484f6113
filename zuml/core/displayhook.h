/// Pages for inspection: the way by which an operation shows pictures of what it found, whatever
/// shows them.
///
/// An operation stands on a lower floor than the display and does not know it. It offers its pages
/// here; nothing happens until a display, or an application that collects the pages, takes them by
/// ZUMSetPageOutput. No result depends on a page. The header is public, since an application's own
/// operations may offer pages, and its own viewer may take them.
#pragma once

#include <functional>
#include <span>
#include <type_traits>
#include <vector>

#include "zuml/core/export.h"
#include "zuml/core/zumimage.h"

/// Takes a page: its title and its pictures. It is called in the thread of the operation that
/// offers the page, by several threads at once if there are several, and may call operations. What
/// it throws is dropped.
using ZUMPageOutput =
    std::function<void(const char* title, std::span<const ZUMGenericImage> images)>;

/// Sends the pages of all threads to `output` and returns the earlier output. An empty output, as
/// there is at first, drops them. A page that another thread has just offered may still reach the
/// earlier one.
ZUML_API ZUMPageOutput ZUMSetPageOutput(ZUMPageOutput output);

/// Whether there is an output. An operation asks before it makes pictures for a page alone.
[[nodiscard]] ZUML_API bool ZUMPageOutputP() noexcept;

/// Offers a page: `ZUMShowPage("Labels", {colours, image})`. Never throws.
ZUML_API void ZUMShowPage(const char* title, const std::vector<ZUMGenericImage>& images) noexcept;

/// Offers a page whose pictures `make()` returns, as a std::vector<ZUMGenericImage>. It is called
/// if there is an output only, and what it throws is dropped with the page.
template <class Make>
requires std::is_invocable_r_v<std::vector<ZUMGenericImage>, Make&> void ZUMShowPage(
    const char* title, Make&& make) noexcept {
  if (!ZUMPageOutputP()) return;
  try {
    ZUMShowPage(title, std::vector<ZUMGenericImage>(make()));
  } catch (...) {
  }
}
