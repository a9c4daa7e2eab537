#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "scc_convertor.h"
#include "scc_variant.h"
#include "sys_exception.h"

namespace {

constexpr char const *kOutOfRange = "Value out of range.";

// What a conversion gave: the value's text, or the exception's.
template <class T>
SYS_String Try(SCC_Variant const &v) {
  try {
    SCC_Variant const converted(static_cast<T>(v));
    return SYS_String(converted);
  } catch (SYS_Exception const &e) {
    return e.GetText();
  }
}

TEST(VariantTest, ConvertsAcrossKinds) {
  double const nan = std::numeric_limits<double>::quiet_NaN();
  double const inf = std::numeric_limits<double>::infinity();
  struct {
    char const *name;
    SCC_Variant value;
    char const *asLong, *asDouble, *asText;
  } const cases[] = {
      {"integer", SCC_Variant(-7), "-7", "-7.", "-7"},
      {"whole double keeps its point", SCC_Variant(2.0), "2", "2.", "2."},
      {"zeros before the point stay", SCC_Variant(100.0), "100", "100.", "100."},
      {"tiny double", SCC_Variant(1e-7), "0", "0.", "0."},
      {"negative truncates toward 0", SCC_Variant(-2.7), "-2", "-2.7", "-2.7"},
      {"text", SCC_Variant("3.7"), "3", "3.7", "3.7"},
      {"blank text is 0", SCC_Variant(" "), "0", "0.", " "},
      {"top of the range", SCC_Variant(2147483647.0), "2147483647", "2147483647.", "2147483647."},
      {"bottom of the range", SCC_Variant(-2147483648.0), "-2147483648", "-2147483648.", "-2147483648."},
      {"just above", SCC_Variant(2147483647.5), kOutOfRange, "2147483647.5", "2147483647.5"},
      {"just below", SCC_Variant(-2147483648.5), kOutOfRange, "-2147483648.5", "-2147483648.5"},
      {"NaN", SCC_Variant(nan), kOutOfRange, "nan", "nan"},
      {"infinity", SCC_Variant(-inf), kOutOfRange, "-inf", "-inf"},
      {"no number", SCC_Variant("1,5"), "Invalid floating point format.", "Invalid floating point format.", "1,5"},
      {"native long beyond 32 bits", SCC_Variant(5000000000L), kOutOfRange, "5000000000.", "5000000000."},
      {"empty", SCC_Variant(), "0", "0.", ""},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_STREQ(Try<int>(c.value), c.asLong);
    EXPECT_STREQ(Try<double>(c.value), c.asDouble);
    EXPECT_STREQ(SYS_String(c.value), c.asText);
  }
}

TEST(VariantTest, ComparesAsTheSuperiorType) {
  struct {
    char const *name;
    SCC_Variant a, b;
    int equal;
  } const cases[] = {
      {"both empty", SCC_Variant(), SCC_Variant(), 1},
      {"empty against empty text", SCC_Variant(), SCC_Variant(""), 0},
      {"empty against zero", SCC_Variant(0), SCC_Variant(), 0},
      {"integer and double", SCC_Variant(1), SCC_Variant(1.0), 1},
      {"half differs", SCC_Variant(1.5), SCC_Variant(1), 0},
      {"double and its text", SCC_Variant(2.0), SCC_Variant("2."), 1},
      {"double and plain text", SCC_Variant(2.0), SCC_Variant("2"), 0},
      {"integer and text", SCC_Variant(2), SCC_Variant("2"), 1},
      {"case counts", SCC_Variant("a"), SCC_Variant("A"), 0},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.a == c.b, c.equal);
    EXPECT_EQ(c.b != c.a, 1 - c.equal);
  }
  SCC_Variant v(4.5);
  SCC_Variant const &same = v;
  v = same;
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
  struct {
    char const *name;
    SCC_Variant value;
    char const *rule;
    SCC_Convertor *convertor;
    int valid;
    char const *after;  // the variant's text afterwards
  } const cases[] = {
      {"inclusive low", SCC_Variant(0), "[0,10]", nullptr, 1, "0"},
      {"inclusive high", SCC_Variant(10), "[0,10]", nullptr, 1, "10"},
      {"exclusive low", SCC_Variant(0), "(0,10)", nullptr, 0, "Please enter a value within the (0.000000,10.000000) range."},
      {"exclusive high", SCC_Variant(10.0), " (0 , 10 ]x", nullptr, 1, "10."},
      {"any closing but ] excludes", SCC_Variant(10), "[0,10>", nullptr, 0,
       "Please enter a value within the [0.000000,10.000000> range."},
      {"NaN is outside", SCC_Variant(std::nan("")), "[0,10]", nullptr, 0,
       "Please enter a value within the [0.000000,10.000000] range."},
      {"empty variant passes", SCC_Variant(), "(0,1)", nullptr, 1, ""},
      {"empty rule passes", SCC_Variant(-5), "", nullptr, 1, "-5"},
      {"length holds", SCC_Variant("abcde"), "5", nullptr, 1, "abcde"},
      {"length exceeded", SCC_Variant("abcde"), "4", nullptr, 0, "abcde"},
      {"a number has no text", SCC_Variant(123456), "0", nullptr, 1, "123456"},
      {"neither form", SCC_Variant("abc"), "[1;2]", nullptr, 1, "abc"},
      {"mark tests the converted value", SCC_Variant(0.15), "#[1,2]", &tenTimes, 1, "0.15"},
      {"mark converts the bounds back", SCC_Variant(0.3), "#[1,2]", &tenTimes, 0,
       "Please enter a value within the [0.100000,0.200000] range."},
      {"no mark tests the value itself", SCC_Variant(1.5), "[1,2]", &tenTimes, 1, "1.5"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    SCC_Variant const v = c.value;
    EXPECT_EQ(v.Validate(c.rule, c.convertor), c.valid);
    EXPECT_STREQ(SYS_String(v), c.after);
  }
  EXPECT_THROW(SCC_Variant("x").Validate("[0,1]", nullptr), SYS_Exception);
}

}  // namespace
