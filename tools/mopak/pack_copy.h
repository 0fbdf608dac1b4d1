// Changes to an archive are made to a copy beside it, which takes its place when all is done. Whatever goes
// wrong before that leaves the archive as it was.
#pragma once

#include <optional>
#include <string>

#include "tools/mopak/half_written.h"

class pack_copy {
  public:
    // `archive` may be a link, and need not be there.
    explicit pack_copy(const std::string& archive);
    ~pack_copy();
    pack_copy(const pack_copy&) = delete;
    pack_copy& operator=(const pack_copy&) = delete;

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
    std::optional<half_written> copy;
};
