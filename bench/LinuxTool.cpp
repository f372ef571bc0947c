#include "bench/LinuxTool.h"

#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>

#include "bench/Command.h"
#include "bench/Disks.h"

namespace fs = std::filesystem;

namespace {

/// The identifiers of the HFS volumes in a list.
Words HfsVolumes(const std::string& list) {
  Words ids;
  std::istringstream lines(list);
  for (std::string line; std::getline(lines, line);)
    if (line.find(" Apple_HFS ") != std::string::npos) ids.push_back(line.substr(line.rfind(' ') + 1));
  return ids;
}

/// The turns of a ratio, ours and theirs by themselves: what they are taken on cannot change to and fro.
Figures Times(int times, const Words& command) {
  Figures figures;
  TimeOf(command);
  for (int i = 0; i < times; ++i) figures.push_back(TimeOf(command));
  return figures;
}

Pairs TimesInTurn(int times, const Disks& disks, const Words& ours, const Words& theirs) {
  const auto time = [&](const Words& command) {
    disks.DropCaches();
    return TimeOf(command);
  };
  return InTurn(
      times, [&] { return time(ours); }, [&] { return time(theirs); });
}

}  // namespace

void LinuxTool(Table& table, const fs::path& programs, const fs::path& scratch) {
  constexpr std::size_t kFew = 8, kMany = 300, kVeryMany = 5000;
  const fs::path tool = programs.parent_path() / "libexec/dravik/diskutil";
  if (!fs::exists(tool)) return table.Without("Linux diskutil", "not built here");
  const Words list = {tool, "list"};
  const Words lsblk = {"lsblk", "-J", "-o", "PARTTYPENAME,LABEL,SIZE,NAME,RM,TRAN"};

  const auto loops = LoopDisks::Possible() ? std::make_unique<LoopDisks>(scratch) : nullptr;
  auto mocked = loops ? nullptr : std::make_unique<MockedDisks>(scratch);
  Disks& disks = loops ? static_cast<Disks&>(*loops) : *mocked;
  const std::string kind = loops ? " loop devices" : " mocked devices";
  disks.GrowTo(kFew);
  table.Ratio("Linux list / lsblk -J, " + std::to_string(kFew) + kind, 0.8,
              TimesInTurn(51, disks, list, lsblk));
  const Words info = {tool, "info", HfsVolumes(TextFrom(list)).at(0)};
  const Figures few = Times(101, info);
  disks.GrowTo(kMany);
  table.Ratio("Linux list / lsblk -J, " + std::to_string(kMany) + kind, 0.8,
              TimesInTurn(51, disks, list, lsblk));
  table.Ratio("Linux info, 300" + kind + " / with 8", 1.2, {Times(101, info), few});

  const Words volumes = HfsVolumes(TextFrom(list));
  Words loop = {programs / "bench_spawn_loop", tool, std::to_string(volumes.size())};
  loop.insert(loop.end(), volumes.begin(), volumes.end());
  const std::string path = std::getenv("PATH");
  setenv("PATH", (tool.parent_path().string() + ":" + path).c_str(), 1);
  const Words scan = {programs / "../bin/dravik", "scan"};
  table.Ratio("scan of 100 HFS volumes / its commands," + kind, 1.10,
              InTurn(
                  11, [&] { return NumberFrom(scan); }, [&] { return NumberFrom(loop); }));
  setenv("PATH", path.c_str(), 1);

  if (loops) {
    loops->RemoveDatabase();
    Words look = {"blkid", "-p"};  // looks into each device, as we have to
    look.insert(look.end(), loops->Nodes().begin(), loops->Nodes().end());
    table.Ratio("Linux list / blkid -p, 300 loop devices, no udev database", 1,
                TimesInTurn(21, disks, list, look));
  }

  mocked = nullptr;
  MockedDisks tree(scratch);
  const auto each = [&](std::size_t count) {
    tree.GrowTo(count);
    Figures figures = Times(11, list);
    for (double& figure : figures) figure /= static_cast<double>(count);
    return figures;
  };
  const Figures many = each(kMany);
  table.Ratio("Linux list, a device of 5000 / of 300, mocked", 1.25, {each(kVeryMany), many});
}
