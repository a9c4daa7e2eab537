#include <gtest/gtest.h>

#include <string>

#include "code_page_guard.h"
#include "sfm_file_path.h"

namespace {

using tovik::mb::CodePage;

// clang-format off
// The parts of a path as base|relative|name|extension.
struct PathCase { char const *name, *text, *parts; bool doubleByte; };
PathCase const kPathCases[] = {
  {"drive without directory", "C:foo.txt", "C:||foo|.txt", false},
  {"drive root", "C:\\", "C:|\\||", false},
  {"rooted directory", "C:\\a\\b.txt", "C:|\\a\\|b|.txt", false},
  {"first colon anywhere ends the base", "a\\b:c\\d", "a\\b:|c\\|d|", false},
  {"network root", "\\\\srv\\share\\dir\\f.txt", "\\\\srv\\share\\|dir\\|f|.txt", false},
  {"network root without a closing separator", "\\\\srv\\share", "\\\\srv\\share|||", false},
  {"two separators are too short for a root", "\\\\", "|\\\\||", false},
  {"two different separators open no root", "\\/srv\\x", "|\\/srv\\|x|", false},
  {"trailing dot dropped for good", "name.", "||name|", false},
  {"dot-dot name vanishes", "a\\..", "|a\\||", false},
  {"dot-dot alone is empty", "..", "|||", false},
  {"all extension", ".profile", "|||.profile", false},
  {"last dot only", "a.b.c", "||a.b|.c", false},
  {"dot in a directory is no extension", "dir.d\\name", "|dir.d\\|name|", false},
  {"trail byte 0x5C is no separator", "d\x81\\.txt", "||d\x81\\|.txt", true},
  {"trail byte '.' is no dot", "a\x81.", "||a\x81.|", true},
  {"trail byte ':' is no colon", "\x81:x\\y", "|\x81:x\\|y|", true},
};
// clang-format on


TEST(FilePathTest, SplitsPaths) {
  for (auto const &c : kPathCases) {
    SCOPED_TRACE(c.name);
    tovik_test::CodePageGuard const page(c.doubleByte ? CodePage::DoubleByte : CodePage::SingleByte);
    SFM_FilePath path(c.text);
    EXPECT_EQ(std::string(path.GetBasePath()) + '|' + std::string(path.GetRelPath()) + '|' +
                  std::string(path.GetFileName()) + '|' + std::string(path.GetFileExtension()),
              c.parts);
  }
}

// clang-format off
struct SetterCase { char const *name, *start; SYS_String (*set)(SFM_FilePath &); char const *expected; };
SetterCase const kSetterCases[] = {
  {"base without colon empties it", "C:\\d\\f.x", [](SFM_FilePath &p) { return p.SetBasePath("d\\x"); }, "\\d\\f.x"},
  {"relative path without separator empties it", "C:\\d\\f.x", [](SFM_FilePath &p) { return p.SetRelPath("x"); }, "C:f.x"},
  {"directory gets a closing separator", "f.x", [](SFM_FilePath &p) { return p.SetFileDirectory("E:\\a"); }, "E:\\a\\f.x"},
  {"empty directory removes it", "C:\\d\\f.x", [](SFM_FilePath &p) { return p.SetFileDirectory(""); }, "f.x"},
  {"name keeps the dots of its text", "d\\a.txt", [](SFM_FilePath &p) { return p.SetFileName("x.y", 0); }, "d\\x.y.txt"},
  {"name drops the extension of its text", "d\\a.txt", [](SFM_FilePath &p) { return p.SetFileName("x.y", 1); }, "d\\x.txt"},
  {"extension gets its dot", "d\\a.b", [](SFM_FilePath &p) { return p.SetFileExtension("txt"); }, "d\\a.txt"},
  {"extension takes the last part", "a", [](SFM_FilePath &p) { return p.SetFileExtension("tar.gz"); }, "a.gz"},
  {"name and extension keep every dot", "d\\z", [](SFM_FilePath &p) { return p.SetFileNameExt("q\\a.b.c"); }, "d\\a.b.c"},
  {"default fills empty parts only", "\\d\\f", [](SFM_FilePath &p) { return p.SetDefault("C:\\x\\g.txt"); }, "C:\\d\\f.txt"},
  {"default path roots a relative one", "sub\\f.x", [](SFM_FilePath &p) { return p.SetDefPath("C:\\base"); }, "C:\\base\\sub\\f.x"},
  {"default path counts only the default separator", "f", [](SFM_FilePath &p) { return p.SetDefPath("C:/b/"); }, "C:/b/\\f"},
  {"default path leaves a based path", "D:f", [](SFM_FilePath &p) { return p.SetDefPath("C:\\b"); }, "D:f"},
  {"other separator gets a second one", "C:\\d/", [](SFM_FilePath &p) { p.AddSeparator(); return p.GetRelPath(); }, "\\d/\\"},
  {"getter takes its path first", "C:\\a.b", [](SFM_FilePath &p) { return p.GetFileName("d\\e.f") << '|' << p.GetRelPath(); }, "e|d\\"},
  {"null text clears", "x\\y", [](SFM_FilePath &p) { return p = static_cast<char const *>(nullptr); }, ""},
  {"empty text clears", "x\\y", [](SFM_FilePath &p) { return p = CString(); }, ""},
  {"text pointing into the old path", "x\\y", [](SFM_FilePath &p) { return p.SetFileName("a\\b.c", static_cast<char const *>(p), 0); }, "a\\y.c"},
  {"the default separator is added", "f", [](SFM_FilePath &p) {
     SFM_FilePath::DefaultSeparator = 1;
     SYS_String added = p.SetFileDirectory("a") << '|' << p.SetDefPath("C:\\b") << '|' << p.AddSeparator();
     SFM_FilePath::DefaultSeparator = 7;  // out of range: the backslash
     return added << '|' << p.SetFileDirectory("c"); }, "a/f|C:\\b/a/f|C:\\b/a/f/|c\\"},
  {"setter with a path first", "x", [](SFM_FilePath &p) { return p.SetFileExtension("C:\\n.a", "b"); }, "C:\\n.b"},
};
// clang-format on

TEST(FilePathTest, Setters) {
  for (auto const &c : kSetterCases) {
    SCOPED_TRACE(c.name);
    SFM_FilePath path(c.start);
    EXPECT_STREQ(c.set(path), c.expected);
    SFM_FilePath::DefaultSeparator = 0;
  }
}

}  // namespace
