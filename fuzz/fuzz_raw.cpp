// The two readers of fixed offsets. The first two bytes of the input give the size of the surface, the rest
// is the file.
#include <cstdlib>
#include <vector>

#include "morvane/media/image_raw.h"
#include "tests/support/temp_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    static const temp_folder folder;
    static const std::string path = folder.path("picture.tga");
    folder.write("picture.tga", std::span(data + 2, size - 2));

    const std::int32_t width = data[0] % 64 + 1;
    const std::int32_t height = data[1] % 64 + 1;
    std::vector<std::uint32_t> memory(static_cast<std::size_t>(width * height), 0x12345678);
    const gtex surface = gtex_wrap(memory.data(), width, height);
    gtex_read_mask(surface, path);
    for (const std::uint32_t word : memory)
        if ((word & 0xffffffU) != 0x345678) std::abort(); // a mask never touches the colours
    gtex_read_raw(surface, path);
    return 0;
}
