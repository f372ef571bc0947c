#include "tests/headless/ScriptedShell.h"

#include "framework/Shell.h"

std::function<ToolAnswer(const std::string& commandLine)> theTool;

void Shell::Execute(const String& commandLine) {
  const ToolAnswer answer = theTool(commandLine.Utf8());
  errorCode_ = answer.ErrorCode;
  result_ = String(answer.Result);
}
