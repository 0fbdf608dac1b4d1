// Many small pictures on one, with the time under each.
#pragma once

#include <cstdint>
#include <vector>

#include "morvane/gtex/gtex.h"

class contact_sheet {
  public:
    // Room for `count` pictures, `columns` in a row, both positive. All are of `width` by `height`, of which
    // `black_rows` above and below are left out.
    contact_sheet(std::int32_t columns, std::int32_t count, std::int32_t width, std::int32_t height,
                  std::int32_t black_rows);

    // The next picture, row by row from the top left on, and its time in seconds.
    void add(gtex picture, double seconds);

    // The sheet as it stands; its pixels are the object's own.
    gtex sheet() { return gtex_wrap(pixels_.data(), width_, height_); }

  private:
    void place(gtex picture, std::int32_t left, std::int32_t top);
    void write_time(double seconds, std::int32_t left, std::int32_t top);

    std::int32_t columns_, source_height_, black_rows_;
    std::int32_t small_width_, small_height_;
    std::int32_t width_, height_;
    std::int32_t placed_ = 0;
    std::vector<std::uint32_t> pixels_;
};
