#include "zuml/algebra/logic.h"

#include "tests/algebra/operand_forms.h"

namespace {

using namespace zuml_test;

TEST(Logic, Masks) {
  CheckForms<bool>([](const auto& a, const auto& b) { return a && b; },
                   [](bool a, bool b) { return a && b; });
  CheckForms<bool>([](const auto& a, const auto& b) { return a || b; },
                   [](bool a, bool b) { return a || b; });
  CheckUnary<bool>([](const auto& a) { return !a; }, [](bool a) { return !a; });
  CheckUnary<bool>([](const auto& a) { return ~a; }, [](bool a) { return !a; });
}

TEST(Logic, Bits) {
  ForTypes<bool, ZUMByte, ZUMShort, ZUMLong>([]<class P>() {
    CheckForms<P>([](const auto& a, const auto& b) { return a & b; },
                  [](P a, P b) { return static_cast<P>(a & b); });
    CheckForms<P>([](const auto& a, const auto& b) { return a | b; },
                  [](P a, P b) { return static_cast<P>(a | b); });
    CheckForms<P>([](const auto& a, const auto& b) { return a ^ b; },
                  [](P a, P b) { return static_cast<P>(a ^ b); });
  });
  ForTypes<ZUMByte, ZUMShort, ZUMLong>([]<class P>() {
    CheckUnary<P>([](const auto& a) { return ~a; }, [](P a) { return static_cast<P>(~a); });
  });
}

// One bit at a time, so that the count modulo 32 stands for itself.
template <class P>
P Shift(P a, P b, bool left) {
  const int count = ((static_cast<int>(b) % 32) + 32) % 32;
  long long value = a;
  for (int i = 0; i < count; ++i)
    value = left ? Wrap<ZUMLong>(2 * value) : (value - (value & 1)) / 2;
  return Wrap<P>(value);
}

TEST(Logic, Shifts) {
  ForTypes<ZUMByte, ZUMShort, ZUMLong>([]<class P>() {
    CheckForms<P>([](const auto& a, const auto& b) { return a << b; },
                  [](P a, P b) { return Shift(a, b, true); });
    CheckForms<P>([](const auto& a, const auto& b) { return a >> b; },
                  [](P a, P b) { return Shift(a, b, false); });
  });
  EXPECT_EQ((MakeLine<ZUMByte>({255}) << 1)(0), 254);
  EXPECT_EQ((MakeLine<ZUMByte>({254}) >> 1)(0), 127);
  EXPECT_EQ((MakeLine<ZUMShort>({-2}) >> 1)(0), -1);
  EXPECT_EQ((MakeLine<ZUMLong>({3}) << 33)(0), 6);
  EXPECT_EQ((MakeLine<ZUMLong>({1}) << -1)(0), std::numeric_limits<ZUMLong>::min());
}

TEST(Logic, ChannelsMustAgree) {
  const ZUMImage<ZUMByte> a(ZUMRect(0, 0, 0, 0, 3, 3, 0, 0), 2, 1), b(a, 3, 1);
  const ZUMImage<bool> ma(a, 2, true), mb(a, 3, true);
  const std::string numbers = ": Diferent number of channels 2!=3";
  EXPECT_EQ(MessageOf([&] { (void)(ma && mb); }), "operator&&" + numbers);
  EXPECT_EQ(MessageOf([&] { (void)(ma || mb); }), "operator||" + numbers);
  EXPECT_EQ(MessageOf([&] { (void)(a & b); }), "operator&" + numbers);
  EXPECT_EQ(MessageOf([&] { (void)(a | b); }), "operator|" + numbers);
  EXPECT_EQ(MessageOf([&] { (void)(a ^ b); }), "operator^" + numbers);
  EXPECT_EQ(MessageOf([&] { (void)(a << b); }), "operator<<" + numbers);
  EXPECT_EQ(MessageOf([&] { (void)(a >> b); }), "operator>>" + numbers);
}

}  // namespace
