#include <gtest/gtest.h>

#include <memory>

#include "object_store.h"
#include "scc_convertor.h"

namespace {

using tovik_test::Recorder;

// Adds 1 in direction 1 and subtracts 1 in direction 0.
class PlusOne : public SCC_Convertor {
 public:
  SCC_Variant Convert(SCC_Variant value, int direction) override {
    return SCC_Variant(static_cast<int>(value) + (direction == 1 ? 1 : -1));
  }
};

TEST(ConvertorTest, ConvertsThroughTheChain) {
  SCC_Convertor plain;
  for (SCC_Variant const &v : {SCC_Variant(3), SCC_Variant(2.5), SCC_Variant("x"), SCC_Variant()}) {
    EXPECT_EQ(plain.Convert(v, 0), v);
    EXPECT_EQ(plain.Convert(v, 1), v);
  }
  SCC_SharedPointer<SCC_Convertor> const plusOne(new PlusOne);
  SCC_IndConvertor const empty(nullptr);
  EXPECT_EQ(const_cast<SCC_IndConvertor &>(empty).Convert(SCC_Variant(5), 1), SCC_Variant(5));
  SCC_IndConvertor forward(plusOne);
  EXPECT_EQ(forward.Convert(SCC_Variant(5), 1), SCC_Variant(6));
  SCC_RevConvertor reverse(plusOne);
  EXPECT_EQ(reverse.Convert(SCC_Variant(5), 0), SCC_Variant(6));
  EXPECT_EQ(reverse.Convert(SCC_Variant(5), 7), SCC_Variant(4)) << "any non-zero direction counts as 1";
  SCC_RevConvertor twice(&reverse);
  EXPECT_EQ(twice.Convert(SCC_Variant(5), 1), SCC_Variant(6));
}

TEST(ConvertorTest, EventsClimbTheChain) {
  SCC_SharedPointer<SCC_Convertor> const target(new PlusOne);
  SCC_IndConvertor first(target);
  SCC_IndConvertor second(&first);
  Recorder onFirst, onSecond;
  onFirst.JoinAtEnd(&first);
  onSecond.JoinAtEnd(&second);
  int data = 0;
  target->Notify(4, &data);
  EXPECT_EQ(onSecond.heard, (std::vector<Recorder::Heard>{{4, SCC_DataToHandle(&data)}}));
  EXPECT_EQ(onFirst.heard.size(), 1u);

  // The copy takes first's listeners, and its hook calls first while first lives.
  SCC_IndConvertor const copy(first);
  EXPECT_FALSE(first.HasListeners());
  Recorder onFirstAgain;
  onFirstAgain.JoinAtEnd(&first);
  target->Notify(3, nullptr);
  EXPECT_EQ(onFirst.heard.size() + onSecond.heard.size(), 2u) << "the copy's own listeners hear nothing";
  EXPECT_EQ(onFirstAgain.heard.size(), 2u) << "both hooks call first";

  // Once the original is gone, the copy's hook calls the copy.
  auto original = std::make_unique<SCC_IndConvertor>(target);
  SCC_IndConvertor heir(*original);
  Recorder onHeir;
  onHeir.JoinAtEnd(&heir);
  original.reset();
  target->Notify(5, nullptr);
  EXPECT_EQ(onHeir.heard.size(), 1u);

  // Closing a loop of indirections is refused.
  SCC_IndConvertor loop(&second);
  first = loop;
  EXPECT_EQ(first.Convert(SCC_Variant(1), 1), SCC_Variant(2)) << "first keeps its target";
}

}  // namespace
