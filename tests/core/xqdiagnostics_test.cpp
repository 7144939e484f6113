#include "zuml/core/xqdiagnostics.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>

namespace {

class XQDiagnostics : public testing::Test {
 protected:
  void SetUp() override {
    XQSetDiagnosticOutput([this](const char* text) { collected_ += text; });
  }
  void TearDown() override {
    XQSetDiagnosticOutput(nullptr);
    XQSetMessageBoxOutput(nullptr);
  }
  std::string collected_;
};

TEST_F(XQDiagnostics, GoToStandardOutputUnlessRedirected) {
  const XQTextOutput earlier = XQSetDiagnosticOutput(nullptr);
  testing::internal::CaptureStdout();
  XQDiagnostic("100%\n");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "100%\n");
  XQSetDiagnosticOutput(earlier);
  const std::string text(5000, 'x');
  XQDiagnosticF("%s %d\n", text.c_str(), 7);
  EXPECT_EQ(collected_, text + " 7\n");
}

TEST_F(XQDiagnostics, AFailedCheckIsOneLineAndWorkGoesOn) {
  EXPECT_FALSE(XQVerifyFun("0", "/home/somebody/zuml/wsh.cpp", 12, nullptr));
  EXPECT_FALSE(XQVerifyFun("pRegion!=NULL", "wsh.cpp", 3, "no neighbour"));
  EXPECT_TRUE(XQVerify(true, "holds"));
  EXPECT_FALSE(XQVerify(false, "n>0", "wsh.cpp", 4));
  EXPECT_EQ(collected_,
            "wsh.cpp:12: internal check failed: 0\n"
            "wsh.cpp:3: internal check failed: pRegion!=NULL: no neighbour\n"
            "wsh.cpp:4: internal check failed: n>0\n");
}

TEST_F(XQDiagnostics, MessageBoxesGoToTheDiagnosticsUnlessShown) {
  XQMessageBox("50%", 0);
  std::string shown;
  XQSetMessageBoxOutput([&shown](const char* text) { shown += text; });
  XQMessageFBox("%d images", 3);
  EXPECT_EQ(collected_, "50%\n");
  EXPECT_EQ(shown, "3 images");
}

TEST_F(XQDiagnostics, AnOutputMayThrowReportAndReplaceItself) {
  XQSetDiagnosticOutput([this](const char* text) {
    const std::string mark = "!";
    XQSetDiagnosticOutput([this](const char* more) { collected_ += more; });
    XQDiagnosticF("[%s]", (text + mark).c_str());
    throw std::runtime_error("lost");
  });
  XQDiagnostic("a");
  std::thread([] { XQDiagnostic("b"); }).join();
  EXPECT_EQ(collected_, "[a!]b");
}

}  // namespace
