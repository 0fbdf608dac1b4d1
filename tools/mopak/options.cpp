#include "tools/mopak/options.h"

#include <charconv>
#include <string_view>
#include <utility>

#include "morvane/mopak/format.h"

const char* const pack_usage =
    "Usage: mopak create PACK.mop [--info TEXT] [--version A.B] FILE...\n"
    "       mopak add PACK.mop FILE...\n"
    "       mopak list PACK.mop\n"
    "       mopak extract PACK.mop [-C DIR] [NAME...]\n"
    "       mopak test PACK.mop\n"
    "       mopak info PACK.mop\n"
    "Keeps many files in one archive, each compressed by itself.\n"
    "\n"
    "  create    a new archive of these files; a folder stands for all files in it, in sorted order\n"
    "  add       the same at the end of an archive; names that it holds stay as they are\n"
    "  list      names, sizes, and the packed size in percent\n"
    "  extract   all files, or those of these names, or those in folders of these names\n"
    "  test      unpacks everything and compares the sizes\n"
    "  info      what the archive says of itself\n"
    "\n"
    "  --info TEXT     free text, up to 254 bytes\n"
    "  --version A.B   two numbers of your own\n"
    "  -C DIR          extract into this folder, which is made if need be; nothing lands outside: a root is\n"
    "                  dropped, '..' never leads above it, '\\' counts as '/', links aren't followed\n"
    "  --              what follows are names\n"
    "  --help          print this text\n"
    "  --version       alone: print the program's version\n"
    "\n"
    "An archive is changed as a whole or not at all, by one mopak at a time: another waits ten seconds at\n"
    "most. What a killed one leaves behind goes with the next command. The exit code is 0 if all went well,\n"
    "1 if something failed, 2 if the words make no sense.\n";

namespace {

constexpr std::pair<std::string_view, pack_command> commands[] = {
    {"create", pack_command::create},   {"add", pack_command::add},   {"list", pack_command::list},
    {"extract", pack_command::extract}, {"test", pack_command::test}, {"info", pack_command::info},
};

bool read_command(std::string_view word, pack_command& command) {
    for (const auto& [name, value] : commands)
        if (name == word) {
            command = value;
            return true;
        }
    return false;
}

bool read_number(std::string_view& text, std::int32_t& number) {
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (problem != std::errc() || number < 0) return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

bool read_version(std::string_view text, std::int32_t& major, std::int32_t& minor) {
    if (!read_number(text, major) || !text.starts_with('.')) return false;
    text.remove_prefix(1);
    return read_number(text, minor) && text.empty();
}

// Takes the value of an option of this command. Returns what is wrong, or nothing.
std::string read_value(std::string_view option, const char* value, pack_options& options) {
    const bool creating = options.command == pack_command::create;
    const bool extracting = options.command == pack_command::extract;
    const std::string word(option);
    if (!(creating && (option == "--info" || option == "--version")) && !(extracting && option == "-C"))
        return "unknown option '" + word + "'";
    if (value == nullptr) return word + " needs a value";
    if (option == "-C") options.folder = value;
    if (option == "--info") options.info = value;
    if (option == "--info" && !mopak_text_fits(value, mopak_info_room))
        return "--info takes up to " + std::to_string(mopak_info_room - 1) + " bytes";
    if (option == "--version" && !read_version(value, options.version_major, options.version_minor))
        return "--version takes two numbers, as in 1.2, not '" + std::string(value) + "'";
    return {};
}

// Options and names behind the command, in any order.
void read_words(std::span<const char* const> words, pack_options& options) {
    std::vector<std::string> names;
    bool only_names = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string_view word = words[i];
        if (only_names || word == "-" || !word.starts_with('-')) {
            names.emplace_back(word);
        } else if (word == "--") {
            only_names = true;
        } else if (word == "--help") {
            options.command = pack_command::help;
            return;
        } else {
            options.error = read_value(word, i + 1 < words.size() ? words[i + 1] : nullptr, options);
            if (!options.error.empty()) return;
            ++i;
        }
    }
    if (names.empty() || names.front().empty()) {
        options.error = "no archive given";
        return;
    }
    options.pack = names.front();
    options.names.assign(names.begin() + 1, names.end());
}

std::string wrong_names(const pack_options& options) {
    switch (options.command) {
    case pack_command::create:
    case pack_command::add:
        return options.names.empty() ? "no files to add" : "";
    case pack_command::list:
    case pack_command::test:
    case pack_command::info:
        return options.names.empty() ? "" : "one archive at a time, not '" + options.names.front() + "' too";
    default:
        return "";
    }
}

} // namespace

pack_options read_pack_options(std::span<const char* const> words) {
    pack_options options;
    if (words.empty()) {
        options.error = "nothing to do";
        return options;
    }
    const std::string_view first = words[0];
    if (first == "--help") return options;
    if (first == "--version") {
        options.command = pack_command::version;
        return options;
    }
    if (!read_command(first, options.command)) {
        options.error = "unknown command '" + std::string(first) + "'";
        return options;
    }
    read_words(words.subspan(1), options);
    if (options.error.empty()) options.error = wrong_names(options);
    return options;
}
