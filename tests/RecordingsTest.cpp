#include <algorithm>
#include <regex>

#include "tests/headless/ProgramFixture.h"

namespace {

namespace fs = std::filesystem;

/// Recorded answers of the tool, "NAME.list" and "NAME.info" or "NAME.DISK.info", with the rows expected of
/// them in "NAME.rows".
class Recordings : public ProgramFixture {
 protected:
  void Play(const std::string& name) const {
    for (const auto& file : fs::directory_iterator(tool_))
      if (file.path().filename() != "diskutil") fs::remove(file);
    for (const auto& file : fs::directory_iterator(kFolder)) {
      const std::string whole = file.path().filename();
      if (whole.starts_with(name + ".")) Write(whole.substr(name.size() + 1), TextOf(file));
    }
  }

  static inline const fs::path kFolder = DRAVIK_SOURCE_DIR "/tests/data";
};

TEST_F(Recordings, BecomeTheRowsExpectedOfThem) {
  RunProgram([&] {
    int played = 0;
    for (const auto& file : fs::directory_iterator(kFolder)) {
      if (file.path().extension() != ".list") continue;
      const std::string name = file.path().stem();
      SCOPED_TRACE(name);
      ++played;
      Play(name);
      const std::string rows = TextOf(kFolder / (name + ".rows"));
      Scan();
      EXPECT_EQ(Table(), rows);
      // Each row was probed once, in order, with its identifier as it stands.
      auto calls = Calls();
      EXPECT_EQ(calls.at(0), "list");
      EXPECT_EQ(calls.size() - 1, static_cast<std::size_t>(std::ranges::count(rows, '\n')));
      // Other line ends make the same rows.
      for (const char* lineEnd : {"\r\n", "\r"}) {
        Write("list", std::regex_replace(TextOf(kFolder / (name + ".list")), std::regex("\n"), lineEnd));
        Scan();
        EXPECT_EQ(Table(), rows);
      }
    }
    EXPECT_GE(played, 3);
  });
}

}  // namespace
