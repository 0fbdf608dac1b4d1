// The program mopak: what it makes, what it refuses, and that no failure costs an archive.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>

#include "morvane/mopak/mopak.h"
#include "tests/support/captured_output.h"
#include "tests/support/pack_files.h"
#include "tests/support/program_run.h"
#include "tests/support/temp_file.h"
#include "tools/mopak/half_written.h"
#include "tools/mopak/lock_file.h"
#include "tools/mopak/pack_copy.h"
#include "tools/mopak/progress.h"
#include "tools/mopak/sources.h"

namespace fs = std::filesystem;

namespace {

std::int64_t lines_in(const std::string& text) {
    return std::count(text.begin(), text.end(), '\n');
}

class mopak_tool : public testing::Test {
  protected:
    mopak_tool() {
        fs::current_path(folder.path());
        for (const packed_file& file : tree)
            folder.write(file.name, file.data);
    }
    ~mopak_tool() override { fs::current_path("/"); }

    program_run run(const std::string& arguments, const std::string& before = "") const {
        return run_program(std::string(MORVANE_TEST_TOOLS) + "/mopak", arguments, scratch.path(), before);
    }
    // One that fails with a code and one line, which names the trouble.
    void expect_failure(const std::string& arguments, int code, const std::string& trouble,
                        const std::string& before = "") const {
        const program_run result = run(arguments, before);
        EXPECT_EQ(result.code, code) << arguments;
        EXPECT_EQ(lines_in(result.err), 1) << result.err;
        EXPECT_NE(result.err.find(trouble), std::string::npos) << result.err;
        EXPECT_EQ(result.err.find("mopak: "), 0U);
        EXPECT_EQ(result.out, "");
    }
    // Nothing but these names in the folder: no copy, no half a file.
    void expect_names(const std::string& where, const std::vector<std::string>& names) const {
        std::vector<std::string> seen;
        for (const auto& entry : fs::directory_iterator(where))
            seen.push_back(entry.path().filename().string());
        std::ranges::sort(seen);
        EXPECT_EQ(seen, names);
    }

    temp_folder folder;
    temp_folder scratch; // for what programs print
    const std::vector<packed_file> tree = {{"data/a b.txt", text_bytes("with a space")},
                                           {"data/deep/er/file", random_bytes(50000, 256, 1)},
                                           {"data/deep.txt", random_bytes(20000, 4, 2)},
                                           {"data/z", text_bytes("z")}};
};

} // namespace

TEST_F(mopak_tool, a_tree_goes_in_sorted_and_comes_out_the_same) {
    const program_run made = run("create p.mop --info 'some text' --version 3.14 data");
    EXPECT_EQ(made.code, 0) << made.err;
    EXPECT_EQ(made.err, "");
    EXPECT_EQ(made.out.find("p.mop: 4 files added, "), 0U);

    // The same bytes as the class makes, one file after the other.
    mopak archive;
    archive.set_version(3, 14);
    archive.create("q.mop", "some text");
    std::vector<packed_file> sorted = tree;
    std::ranges::sort(sorted, {}, &packed_file::name);
    for (const packed_file& file : sorted)
        ASSERT_EQ(archive.addfile(file.name), 1);
    EXPECT_EQ(folder.read("p.mop"), folder.read("q.mop"));

    EXPECT_EQ(run("test p.mop").out, "p.mop: 4 files whole\n");
    const program_run unpacked = run("extract p.mop -C some/where");
    EXPECT_EQ(unpacked.code, 0) << unpacked.err;
    for (const packed_file& file : tree)
        EXPECT_EQ(folder.read("some/where/" + file.name), file.data);
    EXPECT_EQ(std::system("diff -r data some/where/data"), 0);
    expect_names(folder.path(), {"data", "p.mop", "q.mop", "some"});
    expect_names("some/where/data", {"a b.txt", "deep", "deep.txt", "z"});
}

TEST_F(mopak_tool, list_and_info_tell_what_is_there) {
    ASSERT_EQ(run("create p.mop --info 'some text' --version 3.14 data").code, 0);
    const pack_bytes bytes = folder.read("p.mop");
    const auto packed = std::to_string(zlib_packed(tree[2].data).size());
    const std::string list = run("list p.mop").out;
    EXPECT_EQ(lines_in(list), 6);
    const std::string line = list.substr(std::min(list.find("20000"), list.size()));
    EXPECT_EQ(line.find(" " + packed + " "), 15 - packed.size()) << line;
    EXPECT_NE(line.find("%  data/deep.txt\n"), std::string::npos) << line;
    EXPECT_TRUE(list.find("     70013 ") != list.npos && list.ends_with("  4 files\n")) << list; // all bytes
    const std::string info = run("info p.mop").out;
    for (const std::string& part : {std::string("some text"), std::string("3.14"), std::string("files     4"),
                                    std::to_string(bytes.size()), std::string("unpacked 70013")})
        EXPECT_NE(info.find(part), std::string::npos) << part << " in " << info;
    EXPECT_EQ(info.find("left over"), std::string::npos);
    std::ofstream("p.mop", std::ios::app) << "12345";
    EXPECT_NE(run("info p.mop").out.find("left over 5 bytes"), std::string::npos);
}

TEST_F(mopak_tool, add_keeps_what_is_there_and_its_place) {
    ASSERT_EQ(run("create p.mop --info kept data/z").code, 0);
    fs::permissions("p.mop", fs::perms::owner_read | fs::perms::owner_write);
    fs::create_directory("elsewhere");
    fs::create_symlink("../p.mop", "elsewhere/link.mop");
    folder.write("data/z", std::string_view("changed"));
    const program_run added = run("add elsewhere/link.mop data");
    EXPECT_EQ(added.code, 0);
    EXPECT_EQ(added.err, "mopak: data/z: is in the archive already and stays as it is there\n");
    EXPECT_EQ(files_in(folder.read("p.mop")), (std::vector{tree[3], tree[0], tree[2], tree[1]}));
    EXPECT_EQ(text_at(folder.read("p.mop"), 0), "kept");
    EXPECT_TRUE(fs::is_symlink("elsewhere/link.mop"));
    EXPECT_EQ(fs::status("p.mop").permissions(), fs::perms::owner_read | fs::perms::owner_write);
    expect_names("elsewhere", {"link.mop"});

    mopak archive; // without files, which the class doesn't open
    archive.set_version(7, 8);
    ASSERT_EQ(archive.create("none.mop", "still empty"), 1);
    EXPECT_EQ(run("list none.mop").code, 0);
    EXPECT_EQ(run("add none.mop data/z").code, 0);
    EXPECT_EQ(text_at(folder.read("none.mop"), 0), "still empty");
    EXPECT_EQ(number_at(folder.read("none.mop"), 260), 8);
}

TEST_F(mopak_tool, extract_takes_names_and_folders) {
    ASSERT_EQ(run("create p.mop data").code, 0);
    EXPECT_EQ(run("extract p.mop data/deep data/z -C x").out, "p.mop: 2 files extracted\n");
    expect_names("x/data", {"deep", "z"}); // and not deep.txt
    const program_run some = run("extract p.mop -C y nothing data/z");
    EXPECT_EQ(some.code, 1);
    EXPECT_EQ(some.err, "mopak: nothing: isn't in the archive\n");
    EXPECT_EQ(folder.read("y/data/z"), tree[3].data);
    folder.write("y/data/z", std::string_view("old"));
    EXPECT_EQ(run("extract -C y p.mop data/").code, 0);
    EXPECT_EQ(folder.read("y/data/z"), tree[3].data);
}

TEST_F(mopak_tool, extraction_never_leaves_its_folder) {
    const std::string outside = folder.path("outside");
    fs::create_directories("in/real");
    fs::create_directory(outside);
    fs::create_symlink(outside, "in/link");
    fs::create_symlink(outside + "/file", "in/file"); // a link in the place of a file is replaced
    std::vector<std::pair<std::string, std::string>> good;
    std::vector<packed_file> files;
    for (const std::string& rule :
         std::vector<std::string>{"/abs=abs", "\\abs2=abs2", "//up=up", "../up2=up2", "..\\..\\up3=up3",
                                  "real/../../up4=up4", "link/../up5=up5", ".\\new\\x/y=new/x/y", "file=file",
                                  "new/./fi\x1b[2Jle=new/fi\x1b[2Jle", "..x/y..=..x/y.."}) {
        good.emplace_back(rule.substr(0, rule.find('=')), rule.substr(rule.find('=') + 1));
        files.push_back({good.back().first, text_bytes("data of " + good.back().first)});
    }
    for (const char* bad :
         {"new\\/x\\y", "./up2", "real/../abs", "new/x/y", "link/through", "real\\..\\link\\x", "..", "", "/",
          "new\\", "real/", "real", "real/..", "real\\."})
        files.push_back({bad, text_bytes("evil")});
    folder.write("evil.mop", archive_of(files));
    const program_run result = run("extract evil.mop -C in");
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(lines_in(result.err), 14) << result.err;
    EXPECT_NE(result.err.find("mopak: ./up2: is refused, for ../up2 has its place up2\n"), std::string::npos);
    EXPECT_EQ(result.out, "evil.mop: 11 of 25 files extracted, 14 failed\n");
    expect_names(folder.path(), {"data", "evil.mop", "in", "outside"});
    expect_names("outside", {});
    expect_names("in",
                 {"..x", "abs", "abs2", "file", "link", "new", "real", "up", "up2", "up3", "up4", "up5"});
    expect_names("in/real", {});
    EXPECT_FALSE(fs::is_symlink("in/file"));
    for (const auto& [name, place] : good)
        EXPECT_EQ(folder.read("in/" + place), text_bytes("data of " + name));
    EXPECT_EQ(run("list evil.mop").out.find('\x1b'), std::string::npos);
    EXPECT_EQ(run("extract evil.mop -C some '\\abs2' new /abs/").out,
              "evil.mop: 4 of 6 files extracted, 2 failed\n"); // "new\\" and one of two x/y
}

TEST_F(mopak_tool, damage_is_told_file_by_file) {
    ASSERT_EQ(run("create p.mop data").code, 0);
    pack_bytes bytes = folder.read("p.mop");
    bytes[bytes.size() / 2] ^= 1; // in the block of the large file, which can't be packed
    folder.write("p.mop", bytes);
    const program_run tested = run("test p.mop");
    EXPECT_EQ(tested.code, 1);
    EXPECT_EQ(tested.err, "mopak: data/deep/er/file: can't be unpacked, its data are damaged\n");
    EXPECT_EQ(tested.out, "p.mop: 3 of 4 files whole, 1 failed\n");
    EXPECT_EQ(run("extract p.mop -C x").code, 1);
    EXPECT_EQ(folder.read("x/data/z"), tree[3].data);
    expect_names("x/data", {"a b.txt", "deep.txt", "z"});

    laid_files laid = lay_out(tree);
    laid.records[1].raw_size += 1; // unpacks, but to another size
    laid.records[2].offset = -1;
    laid.records[3].raw_size = 0;
    folder.write("q.mop", archive_of(laid.blocks, laid.records));
    const program_run lies = run("test q.mop");
    EXPECT_EQ(lies.code, 1);
    EXPECT_EQ(lines_in(lies.err), 3) << lies.err;
    EXPECT_NE(lies.err.find("unpacks to 50000 bytes, and not to 50001"), std::string::npos) << lies.err;

    // Another writer may have stored an empty file.
    folder.write("r.mop", archive_of({{"nothing", {}}, tree[3]}));
    EXPECT_EQ(run("extract r.mop -C y").code, 0);
    EXPECT_TRUE(fs::exists("y/nothing"));

    for (const char* command : {"list", "test", "info", "extract", "add"}) {
        const std::string more = std::string(command) == "add" ? " data" : "";
        expect_failure(std::string(command) + " data/deep.txt" + more, 1,
                       "data/deep.txt: is no archive, or a damaged one");
        expect_failure(std::string(command) + " missing.mop" + more, 1,
                       "missing.mop: Unable to open archive: No such file");
    }
}

TEST_F(mopak_tool, a_failing_file_leaves_the_old_archive_whole) {
    ASSERT_EQ(run("create p.mop data/z").code, 0);
    const pack_bytes before = folder.read("p.mop");
    folder.write("empty", std::string_view());
    fs::resize_file(folder.write("huge", std::string_view("x")), 2147483648U);
    const std::string long_name = std::string("data/").append(251, 'n');
    folder.write(long_name, std::string_view("x"));
    for (const char* command :
         {"add p.mop data/deep.txt ", "create p.mop data/deep.txt ", "create new.mop data/z "}) {
        expect_failure(command + std::string("missing"), 1, "missing: No such file or directory");
        expect_failure(command + std::string("empty"), 1,
                       "empty: is empty, and an archive can't hold an empty file");
        expect_failure(command + std::string("huge"), 1, "huge: is 2 GiB or larger");
        expect_failure(command + long_name, 1, "has a name of more than 255 bytes");
        expect_failure(command + std::string("/dev/zero"), 1, "/dev/zero: is no plain file");
    }
    expect_failure("add p.mop p.mop", 1, "p.mop: is the archive itself");
    EXPECT_EQ(folder.read("p.mop"), before);
    const std::vector<pack_record> most(3145728 / 268, {"one", 1, 9, 276});
    folder.write("full.mop", archive_of(zlib_packed(text_bytes("1")), most));
    expect_failure("add full.mop data/z data/deep", 1, "full.mop: can't take 11739 files, for an archive",
                   "ulimit -f 1;"); // no room to write
    expect_failure("create data/z data/deep.txt", 1, "data/z: is there already and is no archive");
    expect_failure("create data data", 1, "data: is there already and is no archive");
    expect_failure("create missing/p.mop data/z", 1, "missing/p.mop: No such file or directory");
    EXPECT_EQ(folder.read("data/z"), tree[3].data);
    expect_names(folder.path(), {"data", "empty", "full.mop", "huge", "p.mop"});
}

TEST_F(mopak_tool, a_full_disk_leaves_the_old_archive_whole) {
    ASSERT_EQ(run("create p.mop data/z").code, 0);
    const pack_bytes before = folder.read("p.mop");
    const std::string full = "ulimit -f 40;"; // blocks of 512 bytes
    expect_failure("add p.mop data/deep.txt data/deep/er/file", 1,
                   "p.mop: Writing compressed file to archive failed: File too large", full);
    expect_failure("create p.mop data", 1, "p.mop: Writing compressed file to archive failed", full);
    EXPECT_EQ(folder.read("p.mop"), before);
    expect_names(folder.path(), {"data", "p.mop"});

    ASSERT_EQ(run("create p.mop data").code, 0);
    const program_run unpacked = run("extract p.mop -C x", full);
    EXPECT_EQ(unpacked.code, 1);
    EXPECT_EQ(unpacked.err, "mopak: data/deep/er/file: File too large\n");
    expect_names("x/data/deep/er", {}); // no half a file
    EXPECT_EQ(run("list p.mop >/dev/full").code, 1);
}

TEST_F(mopak_tool, folders_may_hold_what_an_archive_can_not) {
    folder.write("data/empty", std::string_view());
    ASSERT_EQ(mkfifo("data/pipe", 0600), 0);
    fs::create_symlink("z", "data/link");
    fs::create_symlink("..", "data/loop");
    fs::create_symlink("nowhere", "data/broken");
    const program_run made = run("create data/p.mop data ./data/z data/../data/z");
    EXPECT_EQ(made.code, 0);
    EXPECT_EQ(made.err,
              "mopak: data/broken: is no plain file and is left out\n"
              "mopak: data/empty: is empty and is left out, for an archive can't hold an empty file\n"
              "mopak: data/loop: is no plain file and is left out\n"
              "mopak: data/pipe: is no plain file and is left out\n");
    EXPECT_EQ(run("test data/p.mop").out, "data/p.mop: 5 files whole\n");
    EXPECT_EQ(run("create data/p.mop data").code, 0); // again: without itself
    EXPECT_EQ(run("test data/p.mop").out, "data/p.mop: 5 files whole\n");

    fs::create_directory("hollow");
    expect_failure("create q.mop hollow", 1, "q.mop: no files to add");
}

TEST_F(mopak_tool, names_lose_what_leads_out) {
    for (const auto& [path, name] : {std::pair{"a/b", "a/b"},
                                     {"/a/b", "a/b"},
                                     {"../a", "a"},
                                     {"a/../../b", "b"},
                                     {"..", ""},
                                     {"..a/b..", "..a/b.."}})
        EXPECT_EQ(name_in_archive(path), name);
    const program_run made = run("create p.mop " + shell_word(folder.path("data/z")) + " data/../../" +
                                 shell_word(folder.path().filename().string()) + "/data/a*");
    EXPECT_EQ(made.code, 0) << made.err;
    EXPECT_EQ(lines_in(made.err), 1) << made.err;
    EXPECT_EQ(run("extract p.mop -C x").code, 0);
    EXPECT_EQ(folder.read(std::string("x").append(folder.path("data/z"))), tree[3].data);
}

TEST_F(mopak_tool, wrong_words_end_with_2_and_one_line) {
    ASSERT_EQ(run("create p.mop data").code, 0);
    for (const auto& [words, trouble] : {std::pair{"", "nothing to do"},
                                         {"frobnicate", "unknown command 'frobnicate'"},
                                         {"create", "no archive"},
                                         {"create p.mop", "no files"},
                                         {"list ''", "no archive"},
                                         {"list p.mop q.mop", "'q.mop'"},
                                         {"create p.mop --version 1.2.3 x", "two numbers"},
                                         {"create p.mop --version 1.2147483648 x", "two numbers"},
                                         {"create p.mop x --info", "needs a value"},
                                         {"add p.mop --info x y", "unknown option '--info'"},
                                         {"list -C x p.mop", "unknown option '-C'"},
                                         {"extract p.mop -C", "needs a value"}})
        expect_failure(words, 2, trouble);
    std::string longest = "create q.mop data --info ";
    longest.append(254, 'x');
    EXPECT_EQ(run(longest).code, 0);
    expect_failure(longest + "x", 2, "--info takes up to 254 bytes");
    for (const char* words : {"--help", "add --help", "create p.mop --help"})
        EXPECT_NE(run(words).out.find("Usage: mopak create"), std::string::npos);
    EXPECT_EQ(run("--version").out.find("mopak "), 0U);
    folder.write("-dash", std::string_view("x"));
    EXPECT_EQ(run("create r.mop -- -dash").code, 0);
}

TEST_F(mopak_tool, a_signal_takes_what_is_half_written_and_a_kill_leaves_it_to_the_next_command) {
    ASSERT_EQ(run("create p.mop data").code + run("extract p.mop -C out").code, 0);
    const pack_bytes before = folder.read("p.mop");
    const auto killed_by = [&](int signal) {
        const pid_t child = fork();
        if (child == 0) {
            pack_copy copy("p.mop");
            const half_written file(open("out/data", O_RDONLY | O_DIRECTORY), "mopak", 0600);
            if (!copy.lock().empty() || !copy.make(9).empty() || file.descriptor() < 0) _exit(3);
            raise(signal);
            _exit(4);
        }
        int status = 0;
        return waitpid(child, &status, 0) == child && WIFSIGNALED(status) && WTERMSIG(status) == signal;
    };
    const char* next = "list p.mop";
    for (const int signal : {SIGINT, SIGTERM, SIGPIPE, SIGKILL, SIGKILL}) {
        EXPECT_TRUE(killed_by(signal));
        if (signal == SIGKILL) {
            const auto in_folder = fs::directory_iterator(folder.path());
            EXPECT_EQ(std::distance(in_folder, {}), 5); // data, out, archive, copy, lock
            EXPECT_EQ(run(std::exchange(next, "add p.mop data")).code, 0);
        }
        expect_names(folder.path(), {"data", "out", "p.mop"});
        const half_written living(open("out", O_RDONLY | O_DIRECTORY), "mopak", 0600);
        EXPECT_EQ(run("extract p.mop -C out").code, 0);
        EXPECT_TRUE(fs::exists("out/" + living.name()));
        expect_names("out/data", {"a b.txt", "deep", "deep.txt", "z"});
        EXPECT_EQ(folder.read("p.mop"), before);
    }
}

TEST_F(mopak_tool, one_at_a_time_changes_an_archive) {
    ASSERT_EQ(run("create p.mop data/z").code, 0);
    for (unsigned i = 0; i < 8; ++i)
        folder.write("more/" + std::to_string(i), random_bytes(100000, 256, i));
    const std::string tool = shell_word(std::string(MORVANE_TEST_TOOLS) + "/mopak");
    const std::string all = "for i in more/*; do " + tool + " add p.mop $i >/dev/null & done; wait";
    ASSERT_EQ(std::system(all.c_str()), 0);
    EXPECT_EQ(run("test p.mop").out, "p.mop: 9 files whole\n");

    pack_copy copy("p.mop");
    ASSERT_EQ(copy.lock(), "");
    EXPECT_EQ(run("test p.mop").code, 0); // who reads needs no lock, and leaves it alone
    EXPECT_TRUE(fs::exists(copy.lock_path()));
    const pid_t child = fork();
    if (child == 0) {
        lock_file another(open(".", O_RDONLY | O_DIRECTORY), ".p.mop.lock");
        const std::string said = another.take(std::chrono::milliseconds(30));
        _exit(said == "is in use by process " + std::to_string(getppid()) ? 0 : 1);
    }
    int status = -1;
    EXPECT_TRUE(waitpid(child, &status, 0) == child && status == 0);
}

TEST(mopak_progress, long_work_tells_how_far_it_is) {
    // Steps of 5 percent, so many seconds each.
    const auto told = [](bool terminal, double step) {
        double now = 100;
        char* text = nullptr;
        std::size_t size = 0;
        std::FILE* sink = open_memstream(&text, &size);
        {
            progress shown("packing", 1000, sink, terminal, [&] { return now; });
            for (int done = 0; done <= 1050; done += 50, now += step)
                shown.at(done, "some/file");
        }
        std::fclose(sink);
        const std::string all(text, size);
        std::free(text);
        return all;
    };
    EXPECT_EQ(told(false, 0.01) + told(true, 0.01), "");
    EXPECT_EQ(told(false, 1), "packing 10%\npacking 20%\npacking 30%\npacking 40%\npacking 50%\n"
                              "packing 60%\npacking 70%\npacking 80%\npacking 90%\npacking 100%\n");
    const std::string line = told(true, 1);
    EXPECT_NE(line.find("\r\033[Kpacking 5% some/file\r\033[Kpacking 10% some/file"), std::string::npos);
    EXPECT_TRUE(line.ends_with("\r\033[K"));
    const std::string often = told(true, 0.06); // shown not more often than the eye sees
    EXPECT_EQ(std::count(often.begin(), often.end(), '%'), 3);
}
