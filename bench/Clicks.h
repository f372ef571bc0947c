#pragma once

#include <QPoint>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

/// Clicks with the display's own pointer, from a thread and a connection of its own, and takes the time from
/// each press until its handler has run. The places are clicked in turn, at moments that fit no rhythm.
class Clicks {
 public:
  /// `places` are on the screen, and a click on another one than the last must bring the handler.
  explicit Clicks(std::vector<QPoint> places) : places_(std::move(places)) {}
  ~Clicks();

  /// Makes so many clicks, then calls `then` on the clicking thread with the longest time, in seconds.
  void Start(int count, std::function<void(double)> then);
  /// The handler of the last click has run. Any thread.
  void Handled();

 private:
  double Click(QPoint place);
  void Point(QPoint place);
  void Button(unsigned char event);
  void Wait(int least, int most);

  const std::vector<QPoint> places_;
  struct xcb_connection_t* display_ = nullptr;
  std::mt19937 random_{1};  // NOLINT: the same moments in each run
  std::thread thread_;
  std::mutex mutex_;
  std::condition_variable changed_;
  double handled_ = 0;  // when the last handler ended; 0 while a press waits for its own
};
