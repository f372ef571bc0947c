#include "tests/headless/HeadlessToolkit.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "framework/Baton.h"
#include "framework/EventLoop.h"
#include "framework/Pipe.h"

namespace {

constexpr auto kPatience = std::chrono::seconds(20);
constexpr int kTick = 10;  // milliseconds between two looks at a condition

class HeadlessToolkit : public Toolkit {
 public:
  HeadlessToolkit() { current = this; }
  ~HeadlessToolkit() override { current = nullptr; }

  void RunLoop() override {
    if (const auto script = std::exchange(TheStage().script, nullptr)) script();
    while (!ended_) WaitForInput({}, -1);
  }
  void EndLoop() override { ended_ = true; }

  void Wake() override {
    if (!woken_.exchange(true)) [[maybe_unused]]
      const auto written = write(wake_.WriteFd(), "w", 1);
  }

  void Update(const std::vector<Ref<Window>>& open, const Ref<MenuBar>&) override {
    Stage& stage = TheStage();
    stage.openWindows.clear();
    for (const auto& window : open) {
      const std::string name = window->ImplicitName().Utf8();
      stage.openWindows.push_back(name);
      if (std::ranges::find(stage.windowsSeen, name) == stage.windowsSeen.end())
        stage.windowsSeen.push_back(name);
    }
  }

  void Present(Window& window) override {
    TheStage().presented += window.ImplicitName().Utf8().substr(0, 7) + " ";
  }

  void ShowMessage(const String& text) override {
    Stage& stage = TheStage();
    stage.messages.push_back(text.Utf8());
    if (stage.answers.empty()) {
      std::fprintf(stderr, "Nobody answers the message box \"%s\".\n", text.Utf8().c_str());
      std::abort();
    }
    const auto answer = std::move(stage.answers.front());
    stage.answers.pop_front();
    answer();
  }

  void WaitForInput(const std::vector<int>& descriptors, int milliseconds) override {
    std::vector<pollfd> fds{{wake_.ReadFd(), POLLIN, 0}};
    for (const int descriptor : descriptors) fds.push_back({descriptor, POLLIN, 0});
    poll(fds.data(), fds.size(), milliseconds);
    if (!(fds.front().revents & POLLIN)) return;
    char byte;
    [[maybe_unused]] const auto got = read(wake_.ReadFd(), &byte, 1);
    woken_ = false;
    EventLoop::RunPending();
  }

  Area ScreenArea() override { return {0, 0, 1280, 800}; }
  void OpenAddress(const String& address) override { TheStage().addresses.push_back(address.Utf8()); }
  PictureRef ReadPicture(const std::string&) override {
    return std::make_shared<const Picture>(Picture{1, 1, {0xFFFFFFFF}});
  }
  bool CanEdit(EditCommand) override { return TheStage().canEdit; }
  void Edit(EditCommand command) override { TheStage().edits.push_back(command); }

  bool Ended() const { return ended_; }

  static HeadlessToolkit* current;

 private:
  Pipe wake_ = Pipe::Open();
  std::atomic<bool> woken_ = false;
  bool ended_ = false;
};

HeadlessToolkit* HeadlessToolkit::current = nullptr;

}  // namespace

std::unique_ptr<Toolkit> Toolkit::Make(int&, char**) {
  return std::make_unique<HeadlessToolkit>();
}

Stage& TheStage() {
  static Stage stage;
  return stage;
}

void DismissMessages(int count) {
  for (int i = 0; i < count; ++i) TheStage().answers.emplace_back([] {});
}

bool PumpUntil(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  for (;;) {
    {
      const Baton::Turn turn;
      if (condition()) return true;
    }
    if (HeadlessToolkit::current->Ended() || std::chrono::steady_clock::now() > deadline) return false;
    HeadlessToolkit::current->WaitForInput({}, kTick);
  }
}
