// Writes small archives, and their tables unpacked, in the forms that fuzz_mopak reads, into a folder.
#include <filesystem>
#include <fstream>
#include <iostream>

#include "morvane/mopak/mopak.h"
#include "tests/support/pack_files.h"
#include "tests/support/temp_file.h"

namespace {

pack_bytes archive_by_the_writer(const std::vector<packed_file>& files, const std::string& info) {
    const temp_folder folder;
    std::filesystem::current_path(folder.path());
    mopak archive;
    archive.set_version(1, 2);
    archive.create("a.mop", info);
    for (const packed_file& file : files) {
        folder.write(file.name, file.data);
        archive.addfile(file.name);
    }
    std::filesystem::current_path("/");
    return folder.read("a.mop");
}

// The same archive with its table of contents unpacked.
pack_bytes with_open_table(const pack_bytes& archive, std::uint8_t form) {
    const std::int32_t end = number_at(archive, 264), toc_offset = number_at(archive, 272);
    const auto count = static_cast<std::size_t>(number_at(archive, 268));
    const pack_bytes toc = zlib_unpacked(part_of(archive, toc_offset, end - toc_offset), count * 268);
    pack_bytes input = {form};
    const auto append = [&](const pack_bytes& part) { input.insert(input.end(), part.begin(), part.end()); };
    append(part_of(archive, 0, 276));
    input.push_back(static_cast<std::uint8_t>(count));
    append(toc);
    append(part_of(archive, 276, toc_offset - 276));
    return input;
}

void write(const std::filesystem::path& path, const pack_bytes& bytes) {
    std::ofstream stream(path, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: make_mopak_seeds FOLDER\n";
        return 1;
    }
    const std::filesystem::path folder = std::filesystem::absolute(arguments[1]);
    std::filesystem::create_directories(folder);
    const std::vector<std::vector<packed_file>> all = {
        {{"a", text_bytes("x")}},
        {{"data/zeros", pack_bytes(5000)}, {"data/random", random_bytes(200, 256, 1)}},
        {{"one", random_bytes(50, 4, 1)}, {"two", random_bytes(70, 4, 2)}, {"three", random_bytes(90, 4, 3)}},
    };
    for (std::size_t i = 0; i < all.size(); ++i) {
        pack_bytes archive = archive_by_the_writer(all[i], "info");
        const std::string name = std::to_string(i);
        write(folder / (name + "_records"), with_open_table(archive, 1));
        write(folder / (name + "_header"), with_open_table(archive, 2));
        archive.insert(archive.begin(), 0);
        write(folder / (name + "_archive"), archive);
    }
    return 0;
}
