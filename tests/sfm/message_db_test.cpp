#include <algorithm>
#include <cerrno>
#include <string>
#include <vector>

#include "sfm_message_db.h"
#include "sfm_test_support.h"

namespace {

using sfm_test::FailNth;
using sfm_test::ReadAll;
using sfm_test::TempDir;
using sfm_test::WriteAll;
using Op = tovik::io::Operation;

char const kExample[] =
    "; texts of the router\n1:Ready\n2:Done.$\n[errors]\n1:Cannot open %s\n5:Disk full: $\n"
    "[warnings]\n1:Low memory\n 3:blank first\n[a]b\n:text\ntext\nabc:zero\n2:first\r\n"
    "2:second\n7:\n\t4:tab\n3:ends$$\n";

// Every text of ids -30 to 30, then the walk of each section.
std::vector<std::string> Contents(SFM_MessageDB &db) {
  std::vector<std::string> all;
  for (int id = -30; id <= 30; ++id) all.push_back(static_cast<char const *>(db.getTxt(id)));
  for (char const *name : {"errors", "warnings", "a"}) {
    for (SFM_MessageDB::SectionIterator it(&db, name, 0); !it.IsEmpty(); ++it) {
      all.push_back(std::to_string(it.GetPosition()) + static_cast<char const *>(SYS_String(it)));
    }
  }
  return all;
}

TEST(MessageDBTest, TextFormLoadsAsDocumented) {
  TempDir dir;
  std::string const path = dir / "messages.txt";
  WriteAll(path, kExample);
  testing::internal::CaptureStdout();
  SFM_MessageDB db(path.c_str(), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            path + "(9) : leading blanks are not allowed\n" + path + "(10) : invalid section : \"[a]b\"\n" +
                path + "(11) : invalid line : \":text\"\n" + path + "(12) : invalid line : \"text\"\n");
  struct {
    int id;
    char const *text;
  } const texts[] = {
      {1, "Ready"}, {2, "Done."}, {5, "Cannot open %s"}, {9, "Disk full: "}, {12, "Low memory"},
      {-4, "errors"}, {-11, "warnings"}, {3, ""}, {11, "zero"}, {13, "first"}, {18, ""}, {15, "tab"},
      {14, "ends$"},
  };
  for (auto const &t : texts) EXPECT_STREQ(db.getTxt(t.id), t.text) << t.id;
  EXPECT_EQ(db.GetSectionBase("ERRORS"), 4);
  EXPECT_EQ(db.GetSectionBase("warnings"), 11);
  EXPECT_EQ(db.GetSectionBase(""), 0);
  EXPECT_EQ(db.GetSectionBase("a"), -1);
  SFM_MessageDB::SectionIterator it(&db, "errors", 0);
  EXPECT_EQ(it.GetPosition(), 1);
  EXPECT_STREQ(++it, "Disk full: ");
  ++it;
  EXPECT_TRUE(it.IsEmpty());
  SFM_MessageDB::SectionIterator top(&db, "", 0);
  EXPECT_STREQ(top++, "Ready") << "the default section starts below 0 and still steps";

  WriteAll(path, "[s]\n1:a\n2000000000:b\n[t]\n1:c\n");
  SFM_MessageDB sparse(path.c_str(), 0);
  SFM_MessageDB::SectionIterator gap(&sparse, "s", 0);
  EXPECT_STREQ(++gap, "b") << "a gap of two billion numbers is one step";
  ++gap;
  EXPECT_TRUE(gap.IsEmpty()) << "the walk ends before the next section";

  WriteAll(path, "[first]\n[second]\n1:x\n2:" + std::string(200, 'y') + "\n");
  testing::internal::CaptureStdout();
  SFM_MessageDB two(path.c_str(), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout().find(path + "(4) : invalid line"), 0u)
      << "a text too long for getTxt is refused";
  EXPECT_EQ(two.GetSectionBase("first"), 2);
  EXPECT_EQ(two.GetSectionBase("second"), 2);
  EXPECT_STREQ(two.getTxt(-2), "first");
  EXPECT_STREQ(two.getTxt(3), "x");
}

// The file "[s]\n1:a$\n" saves: section "s" (key -2) in record 0, message 3.
std::string const kGolden = std::string("\0\0\2\0\2\0\0\0\0\0\0\0\0\0", 14) +
                            std::string("\0\0\1\0\0\0\0\0\2\0\0\0\1\0\0\0" "1\0", 18) + std::string(18, '\0') +
                            std::string("\1\0\0\0\2\0\0\0\3\0\0\0\1\0\0\0" "3\0", 18) + std::string(18, '\0') +
                            std::string("s\0a$\0", 5);

TEST(MessageDBTest, SaveWritesTheCompiledFormByteForByte) {
  TempDir dir;
  WriteAll(dir / "s.txt", "[s]\n1:a$\n");
  SFM_MessageDB text((dir / "s.txt").c_str(), 0);
  text.Save((dir / "s.mdb").c_str());
  EXPECT_EQ(ReadAll(dir / "s.mdb"), kGolden);

  WriteAll(dir / "m.txt", kExample);
  testing::internal::CaptureStdout();
  SFM_MessageDB original((dir / "m.txt").c_str(), 0);
  testing::internal::GetCapturedStdout();
  original.Save((dir / "m.mdb").c_str());
  SFM_MessageDB compiled((dir / "m.mdb").c_str());
  EXPECT_EQ(Contents(compiled), Contents(original));
  EXPECT_TRUE(SFM_MessageDB::SectionIterator(&compiled, "", 0).IsEmpty()) << "no default section";
  EXPECT_TRUE(sfm_test::FailsCheck([&] { compiled.Save((dir / "m.mdb").c_str()); }));
}

TEST(MessageDBTest, CorruptCompiledFilesStayInBounds) {
  TempDir dir;
  struct {
    char const *name;
    std::vector<std::pair<int, std::string>> patches;  // offset, bytes
    int id;
    std::string text;
  } const cases[] = {
      {"more records than the file holds", {{2, std::string("\5\0\5\0", 4)}}, 3, ""},
      {"a text longer than getTxt's buffer", {{54, std::string("\5\0\0\0\xfe\0\0\0", 8)}, {91, std::string(300, 'z')}},
       3, std::string(199, 'z')},
      {"an id field without a NUL, in a section of every number",
       {{26, "\xff\xff\xff\x7f"}, {66, std::string(20, '9')}}, 2147483647, "a"},
  };
  for (auto const &c : cases) {
    SCOPED_TRACE(c.name);
    std::string bytes = kGolden;
    for (auto const &[offset, patch] : c.patches) bytes.replace(offset, patch.size(), patch);
    WriteAll(dir / "c.mdb", bytes);
    SFM_MessageDB db((dir / "c.mdb").c_str());
    EXPECT_EQ(db.getTxt(c.id), c.text.c_str());
    std::vector<std::string> walk;
    for (SFM_MessageDB::SectionIterator it(&db, "s", 0); !it.IsEmpty(); ++it) walk.emplace_back(SYS_String(it));
    EXPECT_LE(walk.size(), 1u);
  }
}

TEST(MessageDBTest, SaveFailsCleanlyAtEveryTransfer) {
  TempDir dir;
  WriteAll(dir / "m.txt", "1:one\n[s]\n1:two$\n3:three\n");
  SFM_MessageDB db((dir / "m.txt").c_str(), 0);
  std::vector<std::string> const before = Contents(db);
  for (int n = 1;; ++n) {
    SCOPED_TRACE(n);
    sfm_test::Recorder events;
    {
      FailNth const fault(n, EIO, {Op::Read, Op::Write});
      db.Save((dir / "m.mdb").c_str());
      if (FailNth::Count() < n) break;  // no transfer was left to fail
    }
    std::vector<int> const codes = events.Codes();
    EXPECT_EQ(std::count(codes.begin(), codes.end(), 203) + std::count(codes.begin(), codes.end(), 204), 1);
    EXPECT_EQ(Contents(db), before) << "the source is intact";
  }
  SFM_MessageDB saved((dir / "m.mdb").c_str());
  EXPECT_EQ(Contents(saved), before);
}

}  // namespace
