// Changes to an archive are made to a copy beside it, which takes its place when all is done. Whatever goes
// wrong before that, the program's being killed included, leaves the archive as it was. One program at a time
// changes an archive.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "tools/mopak/half_written.h"
#include "tools/mopak/lock_file.h"

inline constexpr std::chrono::seconds pack_patience(10); // for another program to end its change

class pack_copy {
  public:
    // `archive` may be a link, and need not be there.
    explicit pack_copy(const std::string& archive);
    ~pack_copy();
    pack_copy(const pack_copy&) = delete;
    pack_copy& operator=(const pack_copy&) = delete;

    // Keeps other programs from changing the archive as long as the object lives. It is read after that.
    // Removes what programs that were killed left behind. Returns what stands against it, or nothing.
    std::string lock();
    std::string lock_path() const;

    // Makes the copy, with the archive's first `size` bytes and its permissions, or empty for a new archive.
    // Returns what went wrong, or nothing.
    std::string make(std::int64_t size);

    const std::string& path() const { return copy_path; } // once it is made

    // Cuts the copy to `size` bytes and lets it take the archive's place.
    std::string put_in_place(std::int64_t size);

  private:
    std::string target; // where the archive really lies
    std::string copy_path;
    int folder = -1;
    std::optional<lock_file> locked;
    std::optional<half_written> copy;
};

// Removes what programs that were killed while they changed the archive left behind, as far as that is
// allowed. For programs that only read it.
void remove_left_behind(const std::string& archive);
