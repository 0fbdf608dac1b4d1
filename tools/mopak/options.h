// The command line of mopak.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

enum class pack_command { help, version, create, add, list, extract, test, info };

struct pack_options {
    pack_command command = pack_command::help;
    std::string pack;
    std::vector<std::string> names; // files to add, or files of the archive
    std::string info;
    std::int32_t version_major = 0;
    std::int32_t version_minor = 0;
    std::string folder = "."; // where `extract` puts its files
    std::string error;        // what is wrong with the words, empty if nothing is
};

// Reads the words behind the program's name.
pack_options read_pack_options(std::span<const char* const> words);

extern const char* const pack_usage;
