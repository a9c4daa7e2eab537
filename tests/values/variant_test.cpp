#include <gtest/gtest.h>

#include <cmath>

#include "scc_convertor.h"
#include "scc_variant.h"
#include "sys_exception.h"

namespace {

// The value as an integer, or the exception's text.
SYS_String AsLong(SCC_Variant const &v) {
  try {
    return SYS_String(SCC_Variant(static_cast<int>(v)));
  } catch (SYS_Exception const &e) {
    return e.GetText();
  }
}

TEST(VariantTest, ConvertsAcrossKinds) {
  char const *const outOfRange = "Value out of range.";
  struct { char const *name; SCC_Variant value; char const *asLong, *asText; } const cases[] = {
      {"whole double keeps its point", SCC_Variant(100.0), "100", "100."},
      {"tiny double", SCC_Variant(1e-7), "0", "0."},
      {"bottom of the range", SCC_Variant(-2147483648.0), "-2147483648", "-2147483648."},
      {"just above", SCC_Variant(2147483647.5), outOfRange, "2147483647.5"},
      {"NaN", SCC_Variant(std::nan("")), outOfRange, "nan"},
      {"no number", SCC_Variant("1,5"), "Invalid floating point format.", "1,5"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_STREQ(AsLong(c.value), c.asLong);
    EXPECT_STREQ(SYS_String(c.value), c.asText);
  }
  EXPECT_NE(SCC_Variant(), SCC_Variant(""));
  EXPECT_EQ(SCC_Variant(2.0), SCC_Variant("2.")) << "compared as text";
  EXPECT_NE(SCC_Variant(2.0), SCC_Variant("2"));
  SCC_Variant v(4.5);
  v = static_cast<SCC_Variant const &>(v);
  EXPECT_EQ(v, SCC_Variant(4.5)) << "self-assignment keeps the value";
}

// Direction 1 multiplies by 10, direction 0 divides.
class TenTimes : public SCC_Convertor {
 public:
  SCC_Variant Convert(SCC_Variant value, int direction) override {
    return SCC_Variant(direction == 1 ? static_cast<double>(value) * 10 : static_cast<double>(value) / 10);
  }
};

TEST(VariantTest, ValidatesRangesAndLengths) {
  TenTimes tenTimes;
  // after: the variant's text afterwards.
  struct { char const *name; SCC_Variant value; char const *rule; int valid; char const *after; } const cases[] = {
      {"exclusive low", SCC_Variant(0), "(0,10)", 0, "Please enter a value within the (0.000000,10.000000) range."},
      {"blanks, and ( excludes only its own side", SCC_Variant(10.0), " (0 , 10 ]x", 1, "10."},
      {"NaN is outside", SCC_Variant(std::nan("")), "[0,10>", 0,
       "Please enter a value within the [0.000000,10.000000> range."},
      {"length exceeded", SCC_Variant("abcde"), "4", 0, "abcde"},
      {"neither form", SCC_Variant("abc"), "[1;2]", 1, "abc"},
      {"mark converts the bounds back", SCC_Variant(0.3), "#[1,2]", 0,
       "Please enter a value within the [0.100000,0.200000] range."},
      {"no mark tests the value itself", SCC_Variant(1.5), "[1,2]", 1, "1.5"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SCC_Variant const v = c.value;
    // Without a "#" the convertor must change nothing; it cannot read text.
    bool const text = v.GetType() == SCC_Variant::ValueString;
    EXPECT_EQ(v.Validate(c.rule, text ? nullptr : &tenTimes), c.valid);
    EXPECT_STREQ(SYS_String(v), c.after);
  }
  EXPECT_THROW(SCC_Variant("x").Validate("[0,1]", nullptr), SYS_Exception);
}

}  // namespace
