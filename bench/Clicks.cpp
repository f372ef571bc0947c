#include "bench/Clicks.h"

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <chrono>

#include "bench/Clock.h"

namespace {

constexpr unsigned char kLeftButton = 1;
constexpr std::chrono::seconds kLost{2};  // after which a click counts as not handled

}  // namespace

Clicks::~Clicks() {
  if (thread_.joinable()) thread_.join();
  if (display_) xcb_disconnect(display_);
}

void Clicks::Start(int count, std::function<void(double)> then) {
  display_ = xcb_connect(nullptr, nullptr);
  thread_ = std::thread([this, count, then = std::move(then)] {
    double longest = 0;
    for (int i = 0; i < count; ++i)
      longest = std::max(longest, Click(places_[static_cast<std::size_t>(i) % places_.size()]));
    then(longest);
  });
}

void Clicks::Handled() {
  const std::lock_guard lock(mutex_);
  handled_ = Now();
  changed_.notify_all();
}

double Clicks::Click(QPoint place) {
  Point(place);
  Wait(10, 40);
  {
    const std::lock_guard lock(mutex_);
    handled_ = 0;
  }
  const double start = Now();
  Button(XCB_BUTTON_PRESS);
  double end = 0;
  {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, kLost, [this] { return handled_ > 0; });
    end = handled_ > 0 ? handled_ : Now();
  }
  Wait(5, 10);
  Button(XCB_BUTTON_RELEASE);
  return end - start;
}

void Clicks::Point(QPoint place) {
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(display_)).data->root;
  xcb_test_fake_input(display_, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, root,
                      static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()), 0);
  xcb_flush(display_);
}

void Clicks::Button(unsigned char event) {
  xcb_test_fake_input(display_, event, kLeftButton, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
  xcb_flush(display_);
}

void Clicks::Wait(int least, int most) {
  std::uniform_int_distribution<int> milliseconds(least, most);
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds(random_)));
}
