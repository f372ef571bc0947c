#pragma once

#include <functional>
#include <string>

struct ToolAnswer {
  int ErrorCode = 0;
  std::string Result;
};

/// In an executable that links ScriptedShell.cpp no command runs: `Shell::Execute` asks this function, with
/// the baton, on the thread that called it. It can give codes that no command ends with.
extern std::function<ToolAnswer(const std::string& commandLine)> theTool;
