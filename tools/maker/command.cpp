#include "tools/maker/command.h"

#include "assets/makers.h"
#include "tools/kit/interrupts.h"
#include "tools/maker/data_tree.h"

namespace assets {
namespace {

constexpr int threads = 2;

constexpr std::string_view usage =
    "Usage: morvane-data [DIR]\n"
    "Makes the files that the show reads, in DIR/data (DIR: the current directory).\n"
    "A file that is there already stays as it is.\n"
    "\n"
    "  --list   print the paths of the files and make nothing\n"
    "  --help   print this text\n";

void print(std::FILE* stream, std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stream);
}

int list(std::FILE* out) {
    for (const maker& row : makers()) {
        print(out, row.path);
        print(out, "\n");
    }
    return 0;
}

int make(std::string_view directory, std::FILE* out, std::FILE* err) {
    end_on_interrupts();
    const std::size_t count = makers().size();
    std::size_t seen = 0;
    auto report = [&](std::string_view path, bool made) {
        std::fprintf(out, "[%2zu/%zu] %-5s %.*s\n", ++seen, count, made ? "made" : "there",
                     static_cast<int>(path.size()), path.data());
        std::fflush(out);
    };
    const tree_result result = make_data_tree(directory, makers(), threads, report);
    if (!result.error.empty()) {
        std::fprintf(err, "morvane-data: %s\n", result.error.c_str());
        return 1;
    }
    std::fprintf(out, "%d made, %d already there\n", result.made, result.already_there);
    return 0;
}

} // namespace

int run_command(std::span<const std::string_view> words, std::FILE* out, std::FILE* err) {
    const std::string_view word = words.empty() ? "." : words.front();
    if (words.size() == 1 && word == "--help") {
        print(out, usage);
        return 0;
    }
    if (words.size() == 1 && word == "--list") return list(out);
    if (words.size() > 1 || word.empty() || word.front() == '-') {
        print(err, usage);
        return 2;
    }
    return make(word, out, err);
}

} // namespace assets
