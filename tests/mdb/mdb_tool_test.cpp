// tovik-mdb as a user runs it: every catalog in data/ round-trips through
// compile and dump, bad lines become diagnostics, and check finds each kind
// of difference between an original and its translation.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace fs = std::filesystem;

namespace {

struct Result {
  int status;
  std::string out, err;
};

std::string Read(fs::path const &path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// Runs the tool in a fresh folder holding a copy of the test catalogs, so
// that its diagnostics name them as a user would.
class MdbTool : public ::testing::Test {
 protected:
  void SetUp() override {
    char name[] = "/tmp/tovik-mdb-test-XXXXXX";
    ASSERT_NE(::mkdtemp(name), nullptr);
    dir = name;
    for (auto const &entry : fs::directory_iterator(TOVIK_TEST_DATA)) {
      fs::copy_file(entry.path(), dir / entry.path().filename());
    }
  }
  void TearDown() override { fs::remove_all(dir); }

  Result Run(std::string const &args) {
    std::string const command =
        "cd '" + dir.string() + "' && '" TOVIK_MDB "' " + args + " >stdout.log 2>stderr.log";
    int const raw = std::system(command.c_str());
    return Result{WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, Read(dir / "stdout.log"),
                  Read(dir / "stderr.log")};
  }

  fs::path dir;
};

TEST_F(MdbTool, EveryCatalogRoundTripsThroughDump) {
  for (auto const &entry : fs::directory_iterator(TOVIK_TEST_DATA)) {
    std::string const name = entry.path().stem().string();
    SCOPED_TRACE(name);
    ASSERT_EQ(Run("compile " + name + ".txt").status, 0);
    // The dump of the compiled form and of the text form each compile to
    // the very same bytes.
    for (std::string const &from : {name + ".mdb", name + ".txt"}) {
      Result const dump = Run("dump " + from);
      EXPECT_EQ(dump.status, 0) << dump.err;
      std::ofstream(dir / "dumped.txt") << dump.out;
      ASSERT_EQ(Run("compile dumped.txt -o again.mdb").status, 0);
      EXPECT_EQ(Read(dir / "again.mdb"), Read(dir / (name + ".mdb"))) << "dumped from " << from;
    }
  }
}

TEST_F(MdbTool, CompileReportsSkippedLinesAndStrictWritesNothing) {
  Result const loose = Run("compile bad.txt -o loose.mdb");
  EXPECT_EQ(loose.status, 0);
  EXPECT_EQ(loose.err,
            "bad.txt:3: warning: leading blanks are not allowed\n"
            "bad.txt:4: warning: invalid section: \"[broken\"\n"
            "bad.txt:5: warning: invalid line: \"text without a colon\"\n");
  EXPECT_TRUE(fs::exists(dir / "loose.mdb"));

  Result const strict = Run("compile --strict bad.txt -o strict.mdb");
  EXPECT_EQ(strict.status, 1);
  EXPECT_NE(strict.err.find("bad.txt:3: error: leading blanks"), std::string::npos);
  EXPECT_FALSE(fs::exists(dir / "strict.mdb"));

  EXPECT_EQ(Run("compile missing.txt").status, 3);
  EXPECT_EQ(Run("compile router.txt -o no/such/folder.mdb").status, 3);
  EXPECT_EQ(Run("compile router.txt -o router.txt").status, 2);
  EXPECT_EQ(Run("compile").status, 2);
}

TEST_F(MdbTool, GetAndSectionsReadBothForms) {
  ASSERT_EQ(Run("compile router.txt").status, 0);
  for (char const *file : {"router.txt", "router.mdb"}) {
    SCOPED_TRACE(file);
    EXPECT_EQ(Run(std::string("get ") + file + " 11").out, "Disk full: \n");  // "$" dropped
    EXPECT_EQ(Run(std::string("get ") + file + " -6").out, "errors\n");       // a section's key
    EXPECT_EQ(Run(std::string("get ") + file + " 5").status, 1);              // the section's id
  }
  EXPECT_EQ(Run("get router.mdb 1x").status, 2);
  EXPECT_EQ(Run("sections router.mdb").out,
            "       base     largest messages  name\n"
            "          6           5        3  errors\n"
            "         13           1        1  warnings\n");
  EXPECT_NE(Run("sections router.txt").out.find("          0           4        4  (default)\n"),
            std::string::npos);
  Result const help = Run("--help");
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("EXIT STATUS"), std::string::npos);
}

TEST_F(MdbTool, CheckFindsEveryKindOfDifference) {
  Result const check = Run("check router.txt router.de.txt");
  EXPECT_EQ(check.status, 1);
  // Id 3 moves its arguments by position and keeps their kinds: no finding.
  EXPECT_EQ(check.err,
            "router.de.txt:4: warning: id 4: placeholders differ in count: \"%s %f %d\" against "
            "\"%s %f %* %d\" in router.txt:5\n"
            "router.de.txt:6: warning: id 7 [errors] 1: placeholders differ in order: \"%d %s\" "
            "against \"%s %d\" in router.txt:7\n"
            "router.de.txt:7: warning: id 8 [errors] 2: placeholders differ in conversion: \"%s\" "
            "against \"%d\" in router.txt:8\n"
            "router.de.txt:8: warning: id 11 [errors] 5: placeholders differ in count: \"%s\" "
            "against \"\" in router.txt:9\n"
            "router.txt:11: warning: id 14 [warnings] 1: missing in router.de.txt\n"
            "router.de.txt:10: warning: id 15 [warnings] 2: not in router.txt\n");

  ASSERT_EQ(Run("compile router.txt").status, 0);
  EXPECT_EQ(Run("check router.txt router.mdb").status, 0);
  fs::last_write_time(dir / "router.mdb",
                      fs::last_write_time(dir / "router.txt") - std::chrono::hours(1));
  Result const stale = Run("check router.txt router.mdb");
  EXPECT_EQ(stale.status, 1);
  EXPECT_EQ(stale.err, "router.mdb: warning: older than router.txt: compile it again\n");
}

}  // namespace
