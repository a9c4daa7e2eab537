#include <cerrno>
#include <filesystem>
#include <set>
#include <string>

#include "sfm_directory.h"
#include "sfm_test_support.h"

namespace {

using sfm_test::FailNth;
using sfm_test::ReadAll;
using sfm_test::Recorder;
using sfm_test::TempDir;
using sfm_test::WriteAll;
namespace fs = std::filesystem;

typedef std::set<std::string> Set;

// Every name a search of dir gives, from the pattern on.
Set Names(SFM_Directory &dir, char *(SFM_Directory::*next)(char const *), char const *pattern) {
  Set names;
  for (char const *name = (dir.*next)(pattern); name != nullptr; name = (dir.*next)(nullptr)) names.insert(name);
  return names;
}

TEST(DirectoryTest, SearchesFollowTheWildcardRules) {
  TempDir tree;
  for (char const *name : {"a.txt", "b.TXT", "noext", ".hidden"}) WriteAll(tree / name, "x");
  fs::create_directory(tree / "sub");
  fs::create_symlink(tree / "sub", tree / "link");
  SFM_Directory dir(tree.path.c_str());
  auto const files = [&](char const *pattern) { return Names(dir, &SFM_Directory::GetNextFile, pattern); };
  EXPECT_EQ(files("*.*"), (Set{".hidden", "a.txt", "b.TXT", "link", "noext"})) << "a link is no directory";
  EXPECT_EQ(files("*.txt"), (Set{"a.txt"})) << "names are case-sensitive";
  EXPECT_EQ(files("?.*"), (Set{"a.txt", "b.TXT"}));
  EXPECT_EQ(files("noext.*"), (Set{"noext"})) << "a trailing .* also matches no extension";
  EXPECT_EQ(Names(dir, &SFM_Directory::GetNextSubdir, "*"), (Set{"sub"})) << "never . or ..";
  EXPECT_EQ(dir.FileExists("sub"), 0);
  EXPECT_EQ(dir.DirExists("a.txt"), 0);
  EXPECT_EQ(dir.DirExists("sub\\"), 1) << "a closing separator names the directory itself";
  EXPECT_EQ(dir.DirExists("sub/"), 0) << "only the default separator is dropped";

  // The two searches run side by side, and a copy shares neither.
  ASSERT_NE(dir.GetNextFile("*.txt"), nullptr);
  EXPECT_STREQ(dir.GetNextSubdir("s*"), "sub");
  SFM_Directory copy(dir);
  EXPECT_EQ(copy.GetNextFile(nullptr), nullptr);
  EXPECT_EQ(dir.GetNextFile(nullptr), nullptr) << "the file search went on to its end";

  EXPECT_EQ(dir + "x.txt", (tree.path + "\\x.txt").c_str());
  EXPECT_EQ(dir + "/abs/x", "/abs/x") << "an absolute path is not joined";
}

TEST(DirectoryTest, CopyMoveAndDeleteAskAndRetry) {
  TempDir tree;
  std::string const a = tree / "a", b = tree / "b", missing = tree / "missing";
  WriteAll(a, "new");
  WriteAll(b, "old");
  SFM_Directory dir(tree.path.c_str());
  Recorder events;
  EXPECT_EQ(dir.CopyFileA(a.c_str(), b.c_str(), 0), 0);
  EXPECT_EQ(dir.MoveFileA(a.c_str(), b.c_str(), 0), 0);
  EXPECT_EQ(ReadAll(b), "old") << "no subscriber, no overwrite";
  EXPECT_EQ(dir.CopyFileA(a.c_str(), b.c_str(), 1), 1);
  EXPECT_EQ(ReadAll(b), "new");
  EXPECT_EQ(events.Codes(), (std::vector<int>{151, 151}));
  EXPECT_EQ(events.heard[0].text, "File exists\r\n\"" + a + "\"\r\n\"" + b + "\"");

  events.heard.clear();
  events.answer = [](int code, SFM_EventData &) { return code == 151 ? SFM::EvRetry : SFM::EvNone; };
  EXPECT_EQ(dir.CopyFileA(a.c_str(), b.c_str(), 0), 0) << "2 is no yes, and never loops";
  events.answer = [&](int code, SFM_EventData &) {
    if (code == 151) return SFM::EvYes;
    if (code != 205) return SFM::EvNone;
    WriteAll(missing, "late");
    return SFM::EvRetry;
  };
  EXPECT_EQ(dir.MoveFileA(a.c_str(), b.c_str(), 0), 1);
  EXPECT_EQ(dir.CopyFileA(missing.c_str(), a.c_str(), 0), 1);
  EXPECT_EQ(ReadAll(a), "late");
  EXPECT_EQ(dir.DeleteFileA(tree.path.c_str()), 0) << "a directory is no file";
  EXPECT_EQ(events.Codes(), (std::vector<int>{151, 151, 205, 207}));
}

TEST(DirectoryTest, AFailedCopyLeavesTheTarget) {
  TempDir tree;
  std::string const source(100000, 's');
  WriteAll(tree / "src", source);
  SFM_Directory dir(tree.path.c_str());
  for (int n = 1;; ++n) {
    SCOPED_TRACE(n);
    WriteAll(tree / "dst", "old");
    Recorder events;
    int copied = 0;
    {
      FailNth const fault(n, EIO, {tovik::io::Operation::Read, tovik::io::Operation::Write});
      copied = dir.CopyFileA((tree / "src").c_str(), (tree / "dst").c_str(), 1);
      if (FailNth::Count() < n) break;
    }
    EXPECT_EQ(copied, 0);
    EXPECT_EQ(events.Codes(), (std::vector<int>{205}));
    EXPECT_EQ(ReadAll(tree / "dst"), "old");
    EXPECT_EQ(ReadAll(tree / "src"), source);
  }
  EXPECT_EQ(ReadAll(tree / "dst"), source);
  EXPECT_EQ(std::distance(fs::directory_iterator(tree.path), fs::directory_iterator()), 2)
      << "no half copy is left behind";
}

TEST(DirectoryTest, MakePathAndDeleteAll) {
  TempDir tree;
  TempDir outside;
  WriteAll(outside / "keep", "x");
  SFM_Directory dir(tree.path.c_str());
  std::string const deep = tree.path + "\\a\\b\\c";
  EXPECT_EQ(dir.MakePath(deep.c_str()), 1);
  EXPECT_TRUE(fs::is_directory(tree / "a/b/c"));
  EXPECT_EQ(dir.MakePath(deep.c_str()), 0) << "the last step found it there";
  WriteAll(tree / "a/b/f", "x");
  WriteAll(tree / "top", "x");
  fs::create_directory_symlink(outside.path, tree / "a/out");
  EXPECT_EQ(dir.DeleteAll(), 1);
  EXPECT_TRUE(fs::is_empty(tree.path));
  EXPECT_EQ(ReadAll(outside / "keep"), "x") << "a link is removed, never followed";
}

}  // namespace
