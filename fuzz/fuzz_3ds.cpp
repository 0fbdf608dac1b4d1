// 3D Studio reader: the input as a block and as a file, which must give the same scene; then all that the
// show does with a scene once it is loaded.
#include <cstdlib>
#include <span>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

#include "morvane/scene/loader_3ds/reader.h"
#include "tests/support/scene_text.h"

namespace {

// A file in memory, which has a path all the same.
class block_file {
  public:
    block_file() : descriptor(memfd_create("fuzz_3ds", 0)) {
        if (descriptor < 0) std::abort();
    }
    std::string write(std::span<const std::uint8_t> bytes) const {
        if (ftruncate(descriptor, 0) != 0) std::abort();
        if (pwrite(descriptor, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
            std::abort();
        return "/proc/self/fd/" + std::to_string(descriptor);
    }

  private:
    int descriptor;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const block_file file;
    const std::span<const std::uint8_t> bytes(data, size);
    moscene from_memory, from_file;
    const bool loaded = sceneloader_3ds().load_stream(from_memory, bytes);
    if (sceneloader_3ds().load_file(from_file, file.write(bytes)) != loaded) std::abort();
    const std::string text = scene_text(from_memory);
    if (text != scene_text(from_file) || text.find(broken_records) != std::string::npos) std::abort();
    if (!loaded && text != scene_text(moscene())) std::abort();
    use_scene(from_memory);
    return 0;
}
