// Packing and unpacking a data tree beside zlib's own time on the same bytes, and adding many small files.
// The tree is the folder named by MORVANE_BENCH_TREE, or bytes of a similar kind: a third of them barely
// packs. Archives lie in the system's temporary place; TMPDIR puts them elsewhere.
#include <benchmark/benchmark.h>

#include <zlib.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "morvane/mopak/mopak.h"
#include "tests/support/pack_files.h"
#include "tests/support/temp_file.h"

namespace {

namespace fs = std::filesystem;

std::vector<packed_file> files_of_tree(const fs::path& tree) {
    std::vector<packed_file> files;
    for (const auto& entry : fs::recursive_directory_iterator(tree)) {
        if (!entry.is_regular_file()) continue;
        std::ifstream stream(entry.path(), std::ios::binary);
        const pack_bytes data(std::istreambuf_iterator<char>(stream), {});
        if (!data.empty()) files.push_back({fs::relative(entry.path(), tree).string(), data});
    }
    return files;
}

std::vector<packed_file> made_files() {
    std::vector<packed_file> files = {{"music", random_bytes(3600000, 256, 1)}};
    for (unsigned i = 0; i < 10; ++i)
        files.push_back({"picture" + std::to_string(i), random_bytes(150000, 256, i)});
    for (unsigned i = 0; i < 6; ++i)
        files.push_back({"texture" + std::to_string(i), random_bytes(220000, 20, i)});
    for (unsigned i = 0; i < 3; ++i)
        files.push_back({"mesh" + std::to_string(i), random_bytes(100000, 3, i)});
    return files;
}

// The files in memory and on disk, and an archive of them.
struct packed_tree {
    packed_tree() {
        const char* tree = std::getenv("MORVANE_BENCH_TREE");
        files = tree != nullptr ? files_of_tree(tree) : made_files();
        for (const packed_file& file : files) {
            names.push_back(folder.write("in/" + file.name, file.data));
            size += static_cast<std::int64_t>(file.data.size());
        }
        std::ranges::sort(names);
        pack(folder.path("whole.mop"));
    }
    void pack(const std::string& path) const {
        mopak archive;
        if (archive.create(path, "") != 1 || archive.addfiles(names) != 1) std::abort();
    }

    temp_folder folder;
    std::vector<packed_file> files;
    std::vector<std::string> names;
    std::int64_t size = 0;
};

const packed_tree& tree() {
    static const packed_tree all;
    return all;
}

void bytes_a_second(benchmark::State& state) {
    state.SetBytesProcessed(state.iterations() * tree().size);
}

void pack_tree(benchmark::State& state) {
    const std::string path = tree().folder.path("a.mop");
    for (auto _ : state)
        tree().pack(path);
    bytes_a_second(state);
}
BENCHMARK(pack_tree)->Name("mopak_pack_tree")->Unit(benchmark::kMillisecond);

void zlib_compress(benchmark::State& state) {
    pack_bytes room(compressBound(8000000));
    for (auto _ : state)
        for (const packed_file& file : tree().files) {
            room.resize(std::max<std::size_t>(room.size(), compressBound(file.data.size())));
            uLongf size = room.size();
            if (compress(room.data(), &size, file.data.data(), file.data.size()) != Z_OK) std::abort();
            benchmark::DoNotOptimize(room.data());
        }
    bytes_a_second(state);
}
BENCHMARK(zlib_compress)->Name("zlib_compress_tree")->Unit(benchmark::kMillisecond);

void unpack_tree(benchmark::State& state) {
    for (auto _ : state) {
        mopak archive;
        if (archive.open(tree().folder.path("whole.mop")) != 1) std::abort();
        for (mopak_file* file = archive.first; file != nullptr; file = file->next)
            if (archive.getdata(*file) == nullptr) std::abort();
    }
    bytes_a_second(state);
}
BENCHMARK(unpack_tree)->Name("mopak_unpack_tree")->Unit(benchmark::kMillisecond);

void zlib_uncompress(benchmark::State& state) {
    std::vector<pack_bytes> packed;
    for (const packed_file& file : tree().files)
        packed.push_back(zlib_packed(file.data));
    pack_bytes room;
    for (auto _ : state)
        for (std::size_t i = 0; i < packed.size(); ++i) {
            uLongf size = tree().files[i].data.size();
            room.resize(std::max<std::size_t>(room.size(), size));
            if (uncompress(room.data(), &size, packed[i].data(), packed[i].size()) != Z_OK) std::abort();
            benchmark::DoNotOptimize(room.data());
        }
    bytes_a_second(state);
}
BENCHMARK(zlib_uncompress)->Name("zlib_uncompress_tree")->Unit(benchmark::kMillisecond);

// A thousand files of 500 bytes.
struct small_files {
    small_files() {
        for (unsigned i = 0; i < 1000; ++i)
            names.push_back(folder.write(std::to_string(i), random_bytes(500, 50, i)));
    }
    temp_folder folder;
    std::vector<std::string> names;
};

void add_small(benchmark::State& state, bool at_once) {
    static const small_files small;
    const std::string path = small.folder.path("a.mop");
    for (auto _ : state) {
        mopak archive;
        bool added = archive.create(path, "") == 1;
        if (at_once)
            added = added && archive.addfiles(small.names) == 1;
        else
            for (const std::string& name : small.names)
                added = added && archive.addfile(name) == 1;
        if (!added) std::abort();
    }
}
BENCHMARK_CAPTURE(add_small, one_by_one, false)
    ->Name("mopak_add_1000_files/one_by_one")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(add_small, at_once, true)
    ->Name("mopak_add_1000_files/at_once")
    ->Unit(benchmark::kMillisecond);

// What a search of the last of many costs.
void find_last(benchmark::State& state) {
    mopak archive;
    for (int i = 0; i < 10000; ++i) {
        auto file = std::make_unique<mopak_file>();
        mopak_text_copy("data/some/file" + std::to_string(i), file->name);
        if (!archive.link(std::move(file))) std::abort();
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(archive.find("data/some/file9999"));
}
BENCHMARK(find_last)->Name("mopak_find_last_of_10000")->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
