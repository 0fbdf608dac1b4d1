// `mopak`, the system's own pack file: many files in one archive, each compressed by itself with zlib. One
// class writes and reads it. The show reads its data from the data tree and opens no archive; this stands
// ready as a service. The form of the file is told in mopak/format.h.
//
// No file is held open between calls, one thread uses an archive, and no failure ends the run: a method that
// returns an int gives 1 for success and else 0, after a critical line in the log that tells what failed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

#include "morvane/mopak/format.h"

// Bytes that whoever receives them owns. They outlive the archive.
using mopak_bytes = std::unique_ptr<std::uint8_t[]>;

struct mopak {
    mopak_file* first = nullptr; // the list of files, in the order of adding; owned
    mopak_file* last = nullptr;
    mopak_header header;
    std::string archive_path;        // kept by `create` and `open`, of any length
    mopak_file* unwritten = nullptr; // where a failed write left files without a record in the archive

    mopak(); // no files, sizes of an archive that holds none
    ~mopak();
    mopak(const mopak&) = delete;
    mopak& operator=(const mopak&) = delete;

    // Stored in the object; they reach the file when its header is next written.
    void set_version(std::int32_t major, std::int32_t minor);

    // Writes a new archive with no files, over a file of that name if there is one. An `info` that doesn't
    // fit its field is refused. The object forgets the files that it knew and keeps its version; after a
    // failure it is as it was.
    int create(const std::string& path, const std::string& info);

    // Adds a file under its path as its name. A name that is in the archive already counts as added and
    // leaves the archive as it is. Refused, with the archive untouched: an empty file, a name that doesn't
    // fit, a file or an archive of 2 GiB or more, a file more than a reader has room for.
    //
    // The new data overwrites the old table of contents. If the disk fails from there on, the archive is left
    // damaged and the list holds the file; the next addition that succeeds drops it and makes the archive
    // whole.
    int addfile(const std::string& name);

    // Adds many: the same files in the archive with the same bytes as one after the other, but the table of
    // contents is written once. A file that can't be added doesn't keep the others out; a failing disk ends
    // it. Returns 1 if all of them are in the archive now.
    int addfiles(std::span<const std::string> names);

    // Loads header and list of files of an archive. One without files can't be opened. -1 where there was no
    // memory for the table of contents. After a failure the object is as it was, except that a list that
    // memory fell short for keeps what of it was built, with no `archive_path`.
    //
    // Any bytes are safe: no more is read than the file holds, and no more is allocated than its size times
    // what zlib can expand.
    int open(const std::string& path);

    // The first file of that name, compared byte by byte; null if there is none.
    mopak_file* find(const std::string& name);

    // The unpacked data of a file of the list, `file.raw_size` bytes. A stream that is shorter than the
    // record says corrects `raw_size`. Null on failure, with an error in the log.
    mopak_bytes getdata(mopak_file& file);

    // By name; a name that isn't in the archive is looked for as a plain file on disk. `size` receives the
    // number of bytes. Null on failure: a critical line, but only a warning if there is no such file at all.
    mopak_bytes getdata(const std::string& name, std::size_t& size);
    mopak_bytes getdata(const std::string& name);

    // Describes the archive on standard output.
    void debug();

    // The wrappers around zlib: a new buffer of exactly `out_size` bytes, or null with an error in the log.
    // `encode` uses zlib's default level. `decode` takes in `out_size` the size to expect, with 0 for up to
    // `scratch_size` bytes, and fails on a stream that holds more; `size` is that of the packed data.
    static mopak_bytes encode(const void* data, std::size_t size, std::size_t& out_size);
    static mopak_bytes decode(const void* data, std::size_t& out_size, std::size_t size);
    static constexpr std::size_t scratch_size = 0x300000;

    // `create`, `open` and `find` without critical line and trace, for programs that tell failures in words
    // of their own. The first two return null, or what failed; errno may hold the system's reason.
    const char* write_new(const std::string& path, const std::string& info);
    const char* load(const std::string& path);
    mopak_file* look_up(const std::string& name) const;

    // The list. `link` takes over a file at the end; false if memory falls short, and the file goes.
    // `drop_from` frees one and all behind it. The name of a file in the list stays as it is.
    bool link(std::unique_ptr<mopak_file> file);
    void drop_from(mopak_file* file);

  private:
    std::unordered_map<std::string_view, mopak_file*> by_name; // the first of each name in the list
};

// An archive can have so many files that its table still unpacks into the scratch of `decode`.
inline constexpr std::size_t mopak_most_files = mopak::scratch_size / mopak_record_size;
