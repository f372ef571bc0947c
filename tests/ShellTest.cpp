#include "framework/Shell.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <sstream>
#include <thread>

#include "framework/ChildProcess.h"
#include "framework/MainThread.h"
#include "tests/FolderFixture.h"
#include "tests/Worker.h"

namespace {

namespace fs = std::filesystem;

struct Outcome {
  int code = -1;
  std::string text;
  bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* stream) {
  *stream << outcome.code << " \"" << outcome.text.substr(0, 200) << "\"";
}

class ShellTest : public FolderFixture {
 protected:
  ~ShellTest() override { Thread::EndAll(); }

  static Outcome Execute(const std::string& line) {
    const auto shell = New<Shell>();
    shell->Execute(line);
    return {shell->ErrorCode(), shell->Result().Utf8()};
  }
  static Outcome OnMain(const std::string& line) {
    return InTurn([&] { return Execute(line); });
  }
  /// The outcome on the main thread, which must be that on a thread too.
  static Outcome OnBoth(const std::string& line) {
    Outcome outcome;
    const auto worker = New<Worker>();
    worker->Work = [&] { outcome = Execute(line); };
    InTurn([&] { worker->Run(); });
    EXPECT_TRUE(WaitUntil([&] { return worker->KillFd() < 0; }));
    EXPECT_EQ(outcome, OnMain(line)) << line;
    return outcome;
  }
};

TEST_F(ShellTest, TellsEveryStatusApart) {
  Script("bin/end", "#!/bin/sh\nexit $1\n");
  Script("bin/die", "#!/bin/sh\necho last words; kill -s $1 $$\n");
  for (int status = 0; status < 256; ++status)
    EXPECT_EQ(OnMain("end " + std::to_string(status)), (Outcome{status, ""}));
  EXPECT_EQ(OnBoth("end 255"), (Outcome{255, ""}));
  for (const auto& [name, number] :
       {std::pair{"HUP", 1}, {"INT", 2}, {"KILL", 9}, {"PIPE", 13}, {"TERM", 15}})
    EXPECT_EQ(OnBoth(std::string("die ") + name), (Outcome{128 + number, "last words\n"}));
}

TEST_F(ShellTest, SaysWhyACommandDidNotRun) {
  Script("bin/plain", "#!/bin/sh\n", false);
  Script("bin/lost", "#!/no/such/interpreter\n");
  fs::create_directory(home_ / "bin/folder");
  testing::internal::CaptureStderr();
  for (const char* line : {"", " \t ", "nosuch", "/no/such", "./bin/plain"})
    EXPECT_EQ(OnBoth(line), (Outcome{127, ""})) << line;
  for (const char* line : {"plain", "lost", "folder", "/"})
    EXPECT_EQ(OnBoth(line), (Outcome{126, ""})) << line;
  EXPECT_EQ(OnBoth(std::string("printf a\0b", 10)).code, 126) << "a word was cut short";
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_NE(told.find("nosuch: No such file or directory\n"), std::string::npos) << told;
  EXPECT_NE(told.find("plain: Permission denied\n"), std::string::npos) << told;
}

TEST_F(ShellTest, LooksCommandsUpInOrderAndOnlyInAbsoluteFolders) {
  for (const char* folder : {"", "relative/", "first/", "second/", "own/"})
    Script(std::string(folder) + "which-one", std::string("#!/bin/sh\nprintf '") + folder + "'\n");
  Script("blocked/which-one", "", false);
  fs::current_path(home_);
  const auto found = [&](std::string path) {
    for (std::size_t at; (at = path.find("~")) != std::string::npos;) path.replace(at, 1, home_.string());
    setenv("PATH", path.c_str(), 1);
    ChildProcess child(Launch::OnThisThread({"which-one"}, home_ / "own"));
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

#ifndef UNDER_THREAD_SANITIZER  // which may put an old posix_spawn before the library's, one that does this
TEST_F(ShellTest, AsksNoInterpreterForHelp) {
  Script("bin/bare", "touch " + (home_ / "touched").string() + "\n");
  std::string path = home_ / "bin/bare";
  char* const words[] = {path.data(), nullptr};
  if (pid_t pid = 0; posix_spawn(&pid, words[0], nullptr, nullptr, words, nullptr) == 0) {
    waitpid(pid, nullptr, 0);
    GTEST_SKIP() << "the sanitizer of this system has an old posix_spawn, one that does this";
  }
  EXPECT_EQ(OnBoth("bare"), (Outcome{126, ""}));
  EXPECT_FALSE(fs::exists(home_ / "touched"));
}
#endif

TEST_F(ShellTest, PassesWordsAsTheyAre) {
  // clang-format off
  const std::vector<std::string> words = {
      "$(touch", "touched)", ";touch", "touched", "&&", "`touch", "touched`", "|", ">touched", "\"a", "b\"", "'",
      "\\", "*", "~", "$HOME", "\xFF\xC3", "Größe", "a\nb", "no\u00A0break", "-n"};
  // clang-format on
  Script("bin/args", "#!/bin/sh\nprintf '<%s>' \"$@\"\n");
  fs::current_path(home_);
  std::string line = "  args", expected;
  for (const auto& word : words) {
    line += " \t " + word;
    expected += "<" + word + ">";
  }
  EXPECT_EQ(OnBoth(line + " "), (Outcome{0, expected}));
  EXPECT_FALSE(fs::exists("touched"));
}

TEST_F(ShellTest, GivesTheCommandNothingButThreeDescriptors) {
  if (!fs::exists("/proc/self/fd")) GTEST_SKIP() << "no /proc to look at";
  for (const int fd : {7, 33, 200}) dup2(STDERR_FILENO, fd);
  signal(SIGINT, SIG_IGN);
  sigset_t blocked;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGUSR1);
  pthread_sigmask(SIG_BLOCK, &blocked, nullptr);

  // The fourth is the folder itself, which ls has open.
  EXPECT_EQ(OnBoth("ls /proc/self/fd").text, "0\n1\n2\n3\n");
  EXPECT_EQ(OnBoth("readlink /proc/self/fd/0").text, "/dev/null\n");
  std::istringstream status(OnBoth("grep -E ^Sig(Blk|Ign): /proc/self/status").text);
  constexpr std::uint64_t kKeptByTheLibrary = std::uint64_t{3} << 31;  // signals 32 and 33
  int masks = 0;
  for (std::string name, mask; status >> name >> mask; ++masks)
    EXPECT_EQ(std::stoull(mask, nullptr, 16) & ~kKeptByTheLibrary, 0u) << name;
  EXPECT_EQ(masks, 2);
  std::istringstream process(OnMain("cat /proc/self/stat").text);
  std::string id, name, state, parent, group;
  process >> id >> name >> state >> parent >> group;
  EXPECT_EQ(group, id);
}

TEST_F(ShellTest, TakesOutputHoweverItComes) {
  Script("bin/closes", "#!/bin/sh\nexec >&-\nsleep 0.2\nexit 3\n");
  Script("bin/leaves",
         "#!/bin/sh\nsleep 300 &\necho $! >" + (home_ / "left").string() + "\necho out\nexit 4\n");
  Script("bin/late", "#!/bin/sh\n(while kill -0 $$; do :; done 2>&-; echo late) &\necho out\nexit 4\n");
  Script("bin/bytes", "#!/bin/sh\nprintf '\\377\\300\\0\\n\\r\\200'\n");
  Script("bin/asks", "#!/bin/sh\nread answer && echo \"$answer\"\nexit 5\n");
  Script("bin/reopens", "#!/bin/sh\necho 1 >/dev/stdout\necho 2\n");
  Script("bin/slow", "#!/bin/sh\nfor i in 1 2 3; do sleep 0.05; printf $i; done\n");
  EXPECT_EQ(OnBoth("closes"), (Outcome{3, ""}));
  EXPECT_EQ(OnBoth("bytes"), (Outcome{0, std::string("\xFF\xC0\0\n\r\x80", 6)}));
  EXPECT_EQ(OnBoth("asks"), (Outcome{5, ""}));
  EXPECT_EQ(OnBoth("reopens"), (Outcome{0, "1\n2\n"}));
  EXPECT_EQ(OnBoth("slow"), (Outcome{0, "123"}));
  EXPECT_EQ(OnBoth("late"), (Outcome{4, "out\nlate\n"}));
  EXPECT_EQ(OnMain("leaves"), (Outcome{4, "out\n"}));
  kill(std::stoi(TextOf(home_ / "left")), SIGKILL);
  const Outcome flood = OnMain("head -c 100000000 /dev/zero");
  EXPECT_TRUE(flood.text == std::string(100'000'000, '\0')) << flood.text.size();
  const rlimit small{1000, RLIM_INFINITY};  // on files, which a command must not meet
  setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_EQ(OnMain("printf %05000d 0"), (Outcome{0, std::string(5000, '0')}));
}

#ifdef __linux__
/// A mounted folder that nobody serves: every look into it waits for ever.
TEST_F(ShellTest, AQuitLeavesAFolderThatHangs) {
  const Descriptor served(open("/dev/fuse", O_RDWR | O_CLOEXEC));
  const std::string options = "rootmode=40000,user_id=0,group_id=0,fd=" + std::to_string(served.Fd());
  const std::string folder = home_ / "hangs";
  fs::create_directory(folder);
  if (!served || mount("hangs", folder.c_str(), "fuse", 0, options.c_str()) != 0)
    GTEST_SKIP() << "no right to mount";
  setenv("PATH", (folder + ":/usr/bin:/bin").c_str(), 1);
  const auto worker = New<Worker>();
  bool begun = false;
  worker->Work = [&] { begun = true, Execute("printf x"); };
  InTurn([&] { worker->Run(); });
  EXPECT_TRUE(WaitUntil([&] { return begun; })) << "the turn is held";
  class Leaves final : public MainThread {
   public:
    void WaitForInput(const std::vector<int>&, int) override {}
    void LeaveWhenQuitting() override {
      if (++asked_ > 1) throw Left();
    }
    struct Left {};

   private:
    int asked_ = 0;
  };
  static Leaves leaves;
  MainThread::Install(leaves);
  EXPECT_THROW(OnMain("printf x"), Leaves::Left);
  Thread::EndAll();
  umount2(folder.c_str(), MNT_FORCE | MNT_DETACH);
}
#endif

TEST_F(ShellTest, AQuitEndsAHangingCommandOfAThread) {
  const std::string alive = home_ / "alive";  // at its end when nobody is left who has it open
  ASSERT_EQ(mkfifo(alive.c_str(), 0600), 0);
  const Descriptor signs(open(alive.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  Script("bin/stubborn",
         "#!/bin/sh\ntrap '' TERM HUP INT\nexec >" + alive + "\necho\nwhile :; do sleep 0.02; done\n");
  // Which obeys, and leaves that one behind.
  Script("bin/leader", "#!/bin/sh\ntrap 'echo >$0.asked; exit' TERM\nstubborn & wait\n");
  const auto worker = New<Worker>();
  worker->Work = [] {
    Execute("leader");
    ADD_FAILURE() << "the thread went on";
  };
  InTurn([&] { worker->Run(); });
  char sign;
  ASSERT_TRUE(WaitUntil([&] { return read(signs.Fd(), &sign, 1) == 1; }));
  const auto quit = std::chrono::steady_clock::now();
  Thread::EndAll();
  EXPECT_LT(std::chrono::steady_clock::now() - quit, std::chrono::seconds(10));
  EXPECT_TRUE(WaitUntil([&] { return read(signs.Fd(), &sign, 1) == 0; })) << "the command still runs";
  EXPECT_TRUE(fs::exists(home_ / "bin/leader.asked")) << "it was given no time to obey";
}

}  // namespace
