// What goes into an archive: the files behind the words of a command line.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

struct pack_source {
    std::string path;
    std::string name; // in the archive
    std::int64_t size = 0;
};

struct source_list {
    std::vector<pack_source> sources;
    std::vector<std::string> notes; // what was left out or named otherwise, a line each
    std::string error;              // why it can't be done, empty if it can
    std::int64_t total() const;
};

// A folder stands for all files below it, in sorted order; links to files count as files, links to folders
// below it are left out. The `own` files, the archive and what stands beside it, are left out, and so are
// files in folders that are empty or no plain files. A file given by its own path must be there, plain, not
// empty, below 2 GiB and not `own`.
source_list collect_sources(std::span<const std::string> words, std::span<const std::string> own);

// How `path` is called in an archive: without what would lead out of the folder where it is unpacked later (a
// root, "..") and without ".". Empty if nothing is left.
std::string name_in_archive(const std::string& path);
