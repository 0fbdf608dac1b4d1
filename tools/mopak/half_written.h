// Files under a name for the time being, until they are whole and get their own. One that is never finished
// goes, also when a signal ends the program. What a program leaves behind that was killed outright can be
// told from what is being written: whoever writes holds a lock on the file.
#pragma once

#include <sys/types.h>

#include <string>

class half_written {
  public:
    // Makes an empty file called `.stem.PROCESS-NUMBER` in the folder open as `folder`. Where that fails,
    // `descriptor` is -1 and errno tells why.
    half_written(int folder, const std::string& stem, mode_t mode);
    ~half_written(); // closes; removes what was not finished
    half_written(const half_written&) = delete;
    half_written& operator=(const half_written&) = delete;

    int descriptor() const { return file; }
    const std::string& name() const { return own_name; } // within the folder

    // Gives the file the name `to` in its folder, in place of what had it. False on failure, with errno.
    bool finish(const std::string& to);

  private:
    int folder;
    int file;
    int doomed = -1;
    bool finished = false;
    std::string own_name;
};

// Removes the files of this stem in the folder that nobody writes any more.
void remove_half_written(int folder, const std::string& stem);

// Whether `name` in the folder still leads to the open file.
bool is_file_of_name(int file, int folder, const std::string& name);
