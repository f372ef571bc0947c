#pragma once

#include <cstddef>
#include <string>

/// A list as the tool prints it, of so many volumes that are kept, each on a line of 75 to 79 characters.
std::string ListOfVolumes(int volumes);

/// A list of about so many bytes, of which every second line is kept: the others are of other types, or of
/// the case-sensitive kind.
std::string ListOfBytes(std::size_t bytes);
