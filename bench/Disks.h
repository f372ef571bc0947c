#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

/// Disks to measure a disk tool on. The first hundred hold an HFS+ volume each, and udev's database knows
/// them.
class Disks {
 public:
  static constexpr std::size_t kVolumes = 100;

  Disks() = default;
  virtual ~Disks() = default;
  Disks(const Disks&) = delete;
  Disks& operator=(const Disks&) = delete;

  virtual void GrowTo(std::size_t count) = 0;
  /// The next look at a disk has to read it, as when nobody else has it open.
  virtual void DropCaches() const {}
};

/// Loop devices, and a database in a /run that only this process and its children see. They are detached
/// while we hold them open, so they go with this process, however it ends.
class LoopDisks : public Disks {
 public:
  /// For root, and not in every container. Where it is, this process has a /run of its own from then on.
  static bool Possible();

  explicit LoopDisks(std::filesystem::path scratch) : scratch_(std::move(scratch)) {}
  ~LoopDisks() override;
  void GrowTo(std::size_t count) override;
  void DropCaches() const override;
  /// There is no database of udev's from then on.
  void RemoveDatabase() const;
  const std::vector<std::string>& Nodes() const { return nodes_; }

 private:
  std::filesystem::path scratch_;
  std::vector<std::string> nodes_;
  std::vector<int> files_;
};

/// A tree of files that umockdev puts in the place of /sys for the commands that are started meanwhile. It
/// has no device files: the tool does not look into a volume.
class MockedDisks : public Disks {
 public:
  explicit MockedDisks(const std::filesystem::path& scratch);
  ~MockedDisks() override;
  void GrowTo(std::size_t count) override;

 private:
  std::filesystem::path root_;
  std::size_t count_ = 0;
};
