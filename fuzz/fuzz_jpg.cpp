// JPEG reader.
#include "fuzz/check_block.h"
#include "morvane/media/image_jpg.h"
#include "tests/support/memory_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::FILE* file = memory_file({data, size});
    check_block(gtex_load_jpg(file));
    std::fclose(file);
    return 0;
}
