#include <gtest/gtest.h>

#include <string>

#include "resstrings.h"
#include "sys_translation.h"

namespace {

namespace res = tovik::res;

TEST(TranslationTest, LibraryTextsAreKeptExactly) {
  EXPECT_STREQ(TR(45018), "Unit of measument is incorrect in %s.");
  EXPECT_STREQ(TR(45033), " Macro");
  int present = 0;
  for (int id = 249; id <= 45116; id = id == 257 ? 44999 : id + 1) present += !TR(id).IsEmpty();
  EXPECT_EQ(present, 7 + 116) << "250-256 and 45000-45115, nothing around them";
}

TEST(TranslationTest, CachesTheFirstAnswer) {
  EXPECT_EQ(static_cast<char const *>(TR(45103)), static_cast<char const *>(TR(45103)));
  EXPECT_STREQ(TR(77000), "");  // a miss, cached as empty
  std::string const longText(1500, 'x');
  static res::StringEntry const library[] = {{77000, "too late"}, {77001, "library"}};
  res::StringEntry const application[] = {{77001, "application"}, {77002, longText.c_str()}};
  res::RegisterStringTable(library, 2, res::TableOwner::Library);
  res::RegisterStringTable(application, 2, res::TableOwner::Application);
  EXPECT_STREQ(TR(77000), "") << "a miss stays a miss";
  EXPECT_STREQ(TR(77001), "application") << "the application's table comes first";
  EXPECT_EQ(TR(77002).GetLength(), 999) << "cut by the search buffer";
  res::UnregisterStringTable(application);
  res::UnregisterStringTable(library);
  EXPECT_STREQ(TR(77001), "application") << "answered from the cache";

  char second[] = "abc";
  EXPECT_EQ(static_cast<char const *>(TR("abc")), static_cast<char const *>(TR(second)));
  EXPECT_STREQ(TR(static_cast<char const *>(nullptr)), "");
}

}  // namespace
