// Runs a program of this build as a user would.
#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

struct program_run {
    int code = -1; // what it returned, -1 if a signal ended it
    std::string out;
    std::string err;
};

inline std::string shell_word(const std::string& text) {
    std::string word = "'";
    for (const char c : text) {
        if (c == '\'') word += "'\\'";
        word += c;
    }
    word += "'";
    return word;
}

// `arguments` is shell text, behind the program. What it prints goes through files in the folder `scratch`.
// `before` is shell text in front of the program, as "ulimit -f 8;".
inline program_run run_program(const std::string& program, const std::string& arguments,
                               const std::string& scratch, const std::string& before = "") {
    const auto content = [](const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    const std::string out = scratch + "/out", err = scratch + "/err";
    const std::string command = "( " + before + " exec " + shell_word(program) + " " + arguments + " ) >" +
                                shell_word(out) + " 2>" + shell_word(err);
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, content(out), content(err)};
}
