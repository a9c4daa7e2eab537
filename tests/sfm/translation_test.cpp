#include <gtest/gtest.h>

#include <string>

#include "exitcleanup.h"
#include "resstrings.h"
#include "sys_translation.h"

namespace {

namespace res = tovik::res;

TEST(TranslationTest, LibraryTextsAreKeptExactly) {
  struct {
    int id;
    char const *text;
  } const cases[] = {
      {250, "Can't open %s"},
      {45014, "Incorrect boolean value. Should be \"Yes\" or \"No.\""},
      {45018, "Unit of measument is incorrect in %s."},
      {45024, "Illegal character with code %#2X in attribute name."},
      {45027, "Open "},
      {45033, " Macro"},
      {45041, "Visual Basic Scripts (*.bas)|*.bas||All Files (*.*)|*.*||"},
      {45064, "Please enter a value within the %c%lf,%lf%c range."},
      {45104, "Mils"},
      {45115, "File %s is already open. Please close this file first."},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.id);
    EXPECT_STREQ(TR(c.id), c.text);
  }
  for (int id : {249, 257, 44999, 45116, 0, -1}) EXPECT_STREQ(TR(id), "") << id;
  int present = 0;
  for (int id = 250; id <= 256; ++id) present += !TR(id).IsEmpty();
  for (int id = 45000; id <= 45115; ++id) present += !TR(id).IsEmpty();
  EXPECT_EQ(present, 7 + 116);
}

TEST(TranslationTest, CachesTheFirstAnswerAndSharesIt) {
  EXPECT_EQ(static_cast<char const *>(TR(45103)), static_cast<char const *>(TR(45103)));
  EXPECT_STREQ(TR(77000), "");  // a miss, cached as empty

  std::string const longText(1500, 'x');
  static res::StringEntry const library[] = {{77000, "too late"}, {77001, "library"}};
  static res::StringEntry application[] = {{77001, "application"}, {77002, nullptr}, {77003, ""}};
  application[1].text = longText.c_str();
  res::RegisterStringTable(library, 2, res::TableOwner::Library);
  res::RegisterStringTable(application, 3, res::TableOwner::Application);
  EXPECT_STREQ(TR(77000), "") << "a miss stays a miss";
  EXPECT_STREQ(TR(77001), "application") << "the application's table comes first";
  EXPECT_EQ(TR(77002).GetLength(), 999) << "cut by the search buffer";
  res::UnregisterStringTable(application);
  EXPECT_STREQ(TR(77001), "application") << "answered from the cache";
  EXPECT_STREQ(TR(77003), "") << "nothing left that has it";
  res::UnregisterStringTable(library);

  char buffer[4] = "abc";
  EXPECT_EQ(res::LoadString(45104, buffer, 0), 0);
  EXPECT_STREQ(buffer, "abc");
  EXPECT_EQ(res::LoadString(45104, buffer, 3), 2);
  EXPECT_STREQ(buffer, "Mi");
}

TEST(TranslationTest, PassesTextThrough) {
  char first[] = "abc";
  char second[] = "abc";
  SYS_String const a = TR(first);
  EXPECT_STREQ(a, "abc");
  EXPECT_EQ(static_cast<char const *>(TR(second)), static_cast<char const *>(a));
  EXPECT_STREQ(TR(static_cast<char const *>(nullptr)), "");
}

void SayCleaned() { std::fputs("cleaned\n", stderr); }

TEST(TranslationDeathTest, ExitCleanupsRunOnce) {
  EXPECT_EXIT(
      {
        tovik::platform::RegisterExitCleanup(&SayCleaned);
        tovik::platform::RegisterExitCleanup(&SayCleaned);
        TR(45104);
        std::exit(0);
      },
      ::testing::ExitedWithCode(0), "^cleaned\n$");
}

}  // namespace
