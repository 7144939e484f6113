#include "zuml/core/xqexception.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(XQException, MakesItsTextLikePrintfOfAnyLength) {
  EXPECT_STREQ(XQException().what(), "");
  const std::string path(100000, 'x');
  EXPECT_EQ(XQExcepIOError("%s: %s", path.c_str(), "100%").what(), path + ": 100%");
}

TEST(XQException, CopiesKeepTheText) {
  XQException kept;
  try {
    throw XQExcepNotFound("no file %d", 7);
  } catch (const XQExcepIOError&) {
    FAIL();
  } catch (const XQException& failure) {
    kept = failure;
  }
  const XQException copy(kept);
  kept = XQException("another");
  EXPECT_STREQ(copy.what(), "no file 7");
}

}  // namespace
