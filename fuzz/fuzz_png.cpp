// PNG reader: the input as it is, then with the checksums of its chunks made right, so that damage gets
// further.
#include "fuzz/check_block.h"
#include "morvane/media/image_png.h"
#include "tests/support/memory_file.h"
#include "tests/support/picture_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    file_bytes file(data, data + size);
    check_block(gtex_load_png_stream(memory_file(file)));
    repair_png_checksums(file);
    check_block(gtex_load_png_stream(memory_file(file)));
    return 0;
}
