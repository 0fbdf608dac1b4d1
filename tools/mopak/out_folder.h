// A folder that files are unpacked into. Nothing that a name says leads out of it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>

// Where a file of this name goes below a folder, as in "data/a.png": '\\' counts as '/', a root and "." count
// for nothing, and ".." takes back the step before it, if there is one. Empty if the name leads to no file.
std::string place_of(std::string_view name);

class out_folder {
  public:
    // Opens the folder, and makes it and those above it if need be. `problem` tells why that failed.
    explicit out_folder(const std::string& path);
    ~out_folder();
    out_folder(const out_folder&) = delete;
    out_folder& operator=(const out_folder&) = delete;

    std::string problem;

    // Writes a file at the place of `name`, with the folders on its way, in place of what had it. Returns
    // what went wrong, or nothing. Refused: a name without a place, and one whose way leads through a link. A
    // file that could not be written whole isn't there. What an extraction that was killed left behind in the
    // file's folder goes.
    std::string write(std::string_view name, std::span<const std::uint8_t> bytes);

  private:
    int root = -1;
    std::unordered_set<std::string> tidied; // folders without left-overs
};
