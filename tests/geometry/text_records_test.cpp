// Text styles, attributes and texts.
#include <gtest/gtest.h>

#include "sys_text_records.h"

namespace {

TEST(TextRecords, StylesAreSharedAndTextsCopied) {
  SYS_TextStyle style;
  SYS_Text text;
  text.SetStyle(style);
  text.SetString("R12");
  style.SetHeight(38100);
  EXPECT_EQ(text.GetStyle()->GetHeight(), 38100) << "the style is not copied";

  SYS_Text copy(text);
  copy.SetString("R13");
  EXPECT_EQ(copy.GetStyle(), &style);
  EXPECT_TRUE(text.GetString() == "R12" && copy.GetString() == "R13");
}

}  // namespace
