// How files get into an archive: `mopak::addfile` and `mopak::addfiles` are made of it, and programs that
// store a file under another name than its path.
#pragma once

#include <optional>
#include <string>

#include "morvane/mopak/disk_file.h"
#include "morvane/mopak/mopak.h"

// Appends files to an archive that was created or opened, and writes the table of contents and the header
// once, at the end:
//
//     mopak_addition addition(archive);
//     const char* problem = addition.add("here/a.png", "data/a.png");
//     if (problem == nullptr) problem = addition.finish();
//
// Both return null, or what failed; errno may hold the system's reason. Nothing is logged as critical.
class mopak_addition {
  public:
    explicit mopak_addition(mopak& archive);

    // Appends the file at `path` under `name`. A name that is there already does nothing. After a failure
    // with `broken` false the archive file is as it was, and others may follow.
    const char* add(const std::string& path, const std::string& name);

    // Writes table and header, if something was added.
    const char* finish();

    // A write failed: the archive file is damaged, and nothing more may be added.
    bool broken() const { return damaged; }

  private:
    const char* make_room();
    const char* append(std::unique_ptr<mopak_file> file, mopak_bytes block);
    const char* break_off(const char* problem);

    mopak& archive;
    std::optional<disk_file> out; // from the first file on
    mopak_bytes toc;              // room for the table, had before anything is written
    std::size_t toc_room = 0;     // in records
    std::int32_t end;             // where the next data block goes
    std::int32_t count = 0;       // files with those that were added
    bool overlapped = false;      // a record says that its data lie behind that
    bool damaged = false;
};
