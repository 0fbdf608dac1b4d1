// The cube: each side three by three panels, sunken frames with raised lids, the middle one a deep socket.
#include <array>
#include <cmath>
#include <numbers>

#include "assets/forms/mesh_kit.h"
#include "assets/meshes/meshes.h"

namespace assets {
namespace {

constexpr int panels = 3; // along an edge
constexpr double half = 78;
constexpr double panel = 2 * half / panels;

// A side of the cube: its outward direction and two along it, right-handed in this order: across, up, out.
struct side {
    vec3 across, up, out;
};
constexpr std::array sides = {
    side{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}, side{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}},
    side{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}, side{{0, 1, 0}, {0, 0, -1}, {-1, 0, 0}},
    side{{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}, side{{0, 0, -1}, {1, 0, 0}, {0, -1, 0}},
};

// The index of the vertex at `place`, which is added if it isn't there: sides share their rims.
std::size_t shared_vertex(mesh& m, vec3 place) {
    for (std::size_t i = 0; i < m.vertices.size(); ++i)
        if (length(m.vertices[i].position - place) < 1e-6) return i;
    return add_seamless_vertex(m, place, 1.5);
}

using rim = std::array<std::size_t, 4>; // the vertices of a square

// A square of half width `reach` around the middle of panel (column, row), `height` above the side.
rim add_rim(mesh& m, const side& s, int column, int row, double reach, double height) {
    const double x = (column + 0.5) * panel - half;
    const double y = (row + 0.5) * panel - half;
    rim r{};
    constexpr std::array<std::array<int, 2>, 4> around = {{{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}};
    for (std::size_t i = 0; i < around.size(); ++i) {
        const double a = x + around[i][0] * reach;
        const double b = y + around[i][1] * reach;
        const vec3 place = s.across * a + s.up * b + s.out * (half + height);
        r[i] = shared_vertex(m, place);
    }
    return r;
}

void add_band(mesh& m, const rim& outer, const rim& inner) {
    for (std::size_t i = 0; i < 4; ++i) {
        const std::size_t j = (i + 1) % 4;
        const std::size_t first = m.faces.size();
        add_quad(m, outer[i], outer[j], inner[j], inner[i], false);
        m.faces[first].ab = true;     // the outer side
        m.faces[first + 1].bc = true; // the inner side
    }
}

mesh modelled() {
    mesh m;
    for (const side& s : sides) {
        for (int row = 0; row < panels; ++row) {
            for (int column = 0; column < panels; ++column) {
                const bool socket = row == panels / 2 && column == panels / 2;
                const rim outer = add_rim(m, s, column, row, panel / 2, 0);
                const rim inner = socket ? add_rim(m, s, column, row, panel * 0.32, -22)
                                         : add_rim(m, s, column, row, panel * 0.34, 7);
                add_band(m, outer, inner);
                add_quad(m, inner[0], inner[1], inner[2], inner[3], true);
            }
        }
    }
    // One wave around the upright axis: the cube leans like jelly, and its edges stay nearly straight. The
    // axis comes out in two sockets, where neighbours that differ much hide.
    order_for_ripple(m, [](vec3 p) { return std::atan2(p.x, p.z) / (2 * std::numbers::pi); });
    return m;
}

} // namespace

file_bytes mesh_cube() {
    return asc_file("cube", modelled());
}

} // namespace assets
