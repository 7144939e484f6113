#include "zuml/core/xqdiagnostics.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

#include "tests/support/diagnostics.h"
#include "tests/support/forked.h"
#include "tests/support/sanitizers.h"

namespace {

using zuml_test::CaptureDiagnostics;

TEST(XQDiagnostics, GoToStandardOutputUnlessRedirected) {
  testing::internal::CaptureStdout();
  XQDiagnostic("100%\n");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "100%\n");
  CaptureDiagnostics diagnostics;
  const std::string text(5000, 'x');
  XQDiagnosticF("%s %d\n", text.c_str(), 7);
  EXPECT_EQ(diagnostics.Take(), text + " 7\n");
  XQMessageBox("50%", 0);
  std::string shown;
  XQSetMessageBoxOutput([&shown](const char* message) { shown += message; });
  XQMessageFBox("%d images", 3);
  XQSetMessageBoxOutput(nullptr);
  EXPECT_EQ(diagnostics.Take(), "50%\n");
  EXPECT_EQ(shown, "3 images");
  EXPECT_FALSE(XQVerifyFun("p!=NULL", "/home/somebody/zuml/wsh.cpp", 3, "no neighbour"));
  EXPECT_EQ(diagnostics.Take(), "wsh.cpp:3: internal check failed: p!=NULL: no neighbour\n");
}

TEST(XQDiagnostics, AnOutputMayThrowReportAndReplaceItself) {
  CaptureDiagnostics diagnostics;
  XQTextOutput collect;
  collect = XQSetDiagnosticOutput([&collect](const char* text) {
    XQSetDiagnosticOutput(collect);
    XQDiagnosticF("[%s]", text);
    if (collect) throw std::runtime_error("lost");
  });
  XQDiagnostic("a");
  std::thread([] { XQDiagnostic("b"); }).join();
  EXPECT_EQ(diagnostics.Take(), "[a]b");
}

TEST(XQDiagnostics, AnOutputServesOneThreadAtATimeAndAForkedProcess) {
  if (kThreadSanitizer) GTEST_SKIP() << "a child may not start threads";
  const CaptureDiagnostics standard;
  std::atomic<bool> is_inside{false};
  XQSetDiagnosticOutput([&is_inside](const char*) {
    EXPECT_FALSE(is_inside.exchange(true));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    is_inside = false;
  });
  const auto report = [] { XQDiagnostic("a"); };
  std::thread first(report), second(report);
  while (!is_inside) std::this_thread::yield();
  EXPECT_TRUE(zuml_test::SucceedsForked([&report] {
    std::thread(report).join();
    return true;
  }));
  first.join();
  second.join();
}

}  // namespace
