// The process around the library: the system's texts for its errors, and
// starting another program.
#ifndef TOVIK_PROCESS_H
#define TOVIK_PROCESS_H

#include <string>

#include "tovik_export.h"

namespace tovik::os {

// The system's description of an errno value; false for a value the system
// does not know.
TOVIK_API bool ErrorText(int error, std::string &text);

// Runs command (a shell command line, which may carry arguments of its own)
// with argument appended as one more argument, passed whole whatever it
// holds. Does not wait for the program, and leaves no zombie behind: the
// program is handed to the system's reaper. 1 if it was started, else 0.
TOVIK_API int StartCommand(char const *command, char const *argument);

}  // namespace tovik::os

#endif  // TOVIK_PROCESS_H
