// Files that live as long as a test.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <stdlib.h> // mkdtemp

// A folder of its own under the system's temporary place. It goes, with all that is in it, when the object
// does.
class temp_folder {
  public:
    temp_folder() {
        std::string name = (std::filesystem::temp_directory_path() / "morvane-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder: " + name);
        folder = name;
    }
    ~temp_folder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    temp_folder(const temp_folder&) = delete;
    temp_folder& operator=(const temp_folder&) = delete;

    // The folder itself.
    const std::filesystem::path& path() const { return folder; }

    // Where a file called `name` lies, or would lie; `name` may hold folders.
    std::string path(std::string_view name) const { return (folder / name).string(); }

    // Writes `bytes` to a file called `name`, makes the folders above it, and gives back its path.
    std::string write(std::string_view name, std::span<const std::uint8_t> bytes) const {
        const std::filesystem::path file = folder / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream stream(file, std::ios::binary | std::ios::trunc);
        stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        if (!stream.flush()) throw std::runtime_error("can't write " + file.string());
        return file.string();
    }
    std::string write(std::string_view name, std::string_view text) const {
        return write(name, std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
    }

    // All bytes of a file in the folder; none if it isn't there.
    std::vector<std::uint8_t> read(std::string_view name) const {
        std::ifstream stream(folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }

  private:
    std::filesystem::path folder;
};
