#include "framework/ChildProcess.h"

#include <thread>

#include "framework/Launch.h"
#include "framework/String.h"
#include "tests/FolderFixture.h"

namespace {

namespace fs = std::filesystem;
using ChildProcessTest = FolderFixture;

TEST_F(ChildProcessTest, IsLookedUpInOrderAndOnlyInAbsoluteFolders) {
  for (const char* folder : {"", "relative/", "first/", "second/", "own/"})
    Script(std::string(folder) + "which-one", std::string("#!/bin/sh\nprintf '") + folder + "'\n");
  Script("blocked/which-one", "", false);
  fs::current_path(home_);
  const auto found = [&](std::string path) {
    for (std::size_t at; (at = path.find("~")) != std::string::npos;) path.replace(at, 1, home_.string());
    setenv("PATH", path.c_str(), 1);
    ChildProcess child(Launch::Now({"which-one"}, home_ / "own"));
    while (child.Advance()) std::this_thread::yield();
    return child.Status() == 0 ? String(child.TakeOutput()).Utf8() : std::to_string(child.Status());
  };
  EXPECT_EQ(found("~/first:~/second"), "first/");
  EXPECT_EQ(found("~/nowhere:~/blocked:~/second:~/first"), "second/");
  EXPECT_EQ(found(":relative:.:./relative::"), "own/");
  EXPECT_EQ(found(""), "own/");
  fs::remove_all(home_ / "own");
  EXPECT_EQ(found(":relative:.:"), "127");
  EXPECT_EQ(found("~/blocked"), "126");
}

}  // namespace
