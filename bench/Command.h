#pragma once

#include <string>
#include <vector>

using Words = std::vector<std::string>;

/// Runs a command to its end and gives its wall time in seconds. What it prints is thrown away.
double TimeOf(const Words& command);

/// The same for two commands of which the second reads what the first prints.
double TimeOf(const Words& producer, const Words& consumer);

/// Runs a command to its end and gives the number it printed.
double NumberFrom(const Words& command);

/// Runs a command to its end and gives all that it printed.
std::string TextFrom(const Words& command);
