#include "morvane/poly/render_modes.h"

#include "morvane/poly/inner/adapters.h"

const std::array<render_mode_row, 24> render_mode_table = {{
    {adapt_point, 0x001},   {adapt_point_aa, 0x101},  {adapt_line, 0x002},      {adapt_line_aa, 0x102},
    {adapt_flat, 0x004},    {adapt_flat_z, 0x024},    {adapt_flat_a, 0x044},    {adapt_flat_az, 0x064},
    {adapt_gouraud, 0x408}, {adapt_gouraud_z, 0x428}, {adapt_gouraud_a, 0x448}, {adapt_gouraud_az, 0x468},
    {adapt_tex, 0x010},     {adapt_tex_z, 0x030},     {adapt_tex_a, 0x050},     {adapt_tex_az, 0x070},
    {adapt_tex_lit, 0x210}, {adapt_tex_lit_z, 0x230}, {adapt_tex_lit_a, 0x250}, {adapt_tex_lit_az, 0x270},
    {adapt_tex_p, 0x090},   {adapt_tex_lit_p, 0x290}, {adapt_tex_pa, 0x0d0},    {adapt_tex_lit_pa, 0x2d0},
}};

void render_mode_init() {}

std::int32_t render_mode_find(std::uint32_t mode) {
    for (std::size_t row = render_mode_table.size(); row-- > 0;) {
        if (render_mode_table[row].mode == mode) return static_cast<std::int32_t>(row);
    }
    return 0;
}

void render_mode_draw(std::uint32_t* destination, poly& polygon, std::int32_t row) {
    if (row < 0 || row >= static_cast<std::int32_t>(render_mode_table.size())) return;
    render_mode_table[static_cast<std::size_t>(row)].adapter(destination, polygon);
}
