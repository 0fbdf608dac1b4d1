// Where the data tree lies, and the files of it that the show reads. Music and the clip are not in the
// tables: without music the show runs in silence, and a clip that can't be opened is told in a box.
//
// A file is named by its path within the tree, "part1/cred.png".
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>

inline constexpr const char* scene_file = "3d/xtelmar4.3ds"; // by which a data tree is known
inline constexpr const char* clip_file = "clip2x.avi";

// The first track starts just before the clock; from there on the clock alone drives the picture.
inline constexpr const char* first_track = "music/Ashwing1.mp3";
inline constexpr const char* second_track = "music/ferrow_amoeba2_test2.ogg";

// In the order in which the show reads them.
std::span<const char* const> needed_files(); // start-up ends without any of these
std::span<const char* const> wanted_files(); // it goes on without these

// The folder of the first tree that holds the scene: "data" of the working directory, "data" in
// `program_folder` and in the three folders above it, "../share/morvane/data" beside it. Nothing if there is
// none.
std::optional<std::filesystem::path> search_data(const std::filesystem::path& program_folder);

// Takes the tree in the folder `named`, or, if that is empty, the one that is found from the running
// program's folder. False, after one line on standard error, if there is no tree; the one in place stays
// then.
bool find_data(const std::string& named);

// The path of a file in the tree in place, which is "data" of the working directory at first.
std::string data_path(const char* file);

bool can_be_read(const std::string& path);

// Whether each of `needed_files` can be read.
bool needed_files_there();

// Writes one line on standard error for each of both tables that can't be read, and for a clip that isn't
// there, with the command that makes it where it isn't there.
void report_missing_files();
