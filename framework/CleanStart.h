#pragma once

/// Repairs what a program may inherit: signals that are blocked or ignored, standard descriptors that are
/// closed, limits and a file mode mask with which it could not use files of its own. The first thing a
/// program calls. SIGINT and SIGHUP stay ignored, which is how a program is told to outlive its terminal.
///
/// Where descriptors 0 to 2 were closed, reading 0 gives its end, writing to 1 fails, and what goes to 2 is
/// lost; no file we open gets their numbers. A reader that has gone and a limit on files are errors of
/// `write` and end nothing. False when there is no /dev/null to put in the place of a descriptor.
bool CleanStart();
