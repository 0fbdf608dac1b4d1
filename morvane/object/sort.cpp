#include "morvane/object/sort.h"

#include <algorithm>

#include <cstddef>
#include <utility>

#include "morvane/base/kernel.h"
#include "morvane/base/numbers.h"

namespace {

// The two parallel arrays that are sorted together.
struct slots {
    std::int32_t* key;
    std::int32_t* order;
};

// The two scans of a partition. Most are over after a few steps; those of keys that are almost in order
// already run through the whole range at each level, so the long ones look at a block of slots at a time.
constexpr std::int32_t few = 8;
constexpr std::int32_t block = 32;

MORVANE_KERNEL std::int32_t scan_down(const std::int32_t* key, std::int32_t lo, std::int32_t j,
                                      std::int32_t pivot) {
    for (; j - lo >= block; j -= block) {
        std::int32_t stops = 0;
        for (std::int32_t k = 0; k < block; ++k)
            stops += key[j - block + k] >= pivot;
        if (stops != 0) break;
    }
    do
        --j;
    while (key[j] < pivot);
    return j;
}

MORVANE_KERNEL std::int32_t scan_up(const std::int32_t* key, std::int32_t hi, std::int32_t i,
                                    std::int32_t pivot) {
    for (; hi - i >= block; i += block) {
        std::int32_t stops = 0;
        for (std::int32_t k = 0; k < block; ++k)
            stops += key[i + 1 + k] <= pivot;
        if (stops != 0) break;
    }
    do
        ++i;
    while (key[i] > pivot);
    return i;
}

// Hoare's partition of the slots lo to hi, both inclusive: those up to the result belong before the others.
std::int32_t partition(slots s, std::int32_t lo, std::int32_t hi) {
    const std::int32_t pivot = s.key[lo];
    std::int32_t i = lo - 1;
    std::int32_t j = hi + 1;
    for (;;) {
        std::int32_t steps = 0;
        do
            --j;
        while (s.key[j] < pivot && ++steps < few);
        if (steps == few) j = scan_down(s.key, lo, j, pivot);
        steps = 0;
        do
            ++i;
        while (s.key[i] > pivot && ++steps < few);
        if (steps == few) i = scan_up(s.key, hi, i, pivot);
        if (i >= j) return j;
        std::swap(s.key[i], s.key[j]);
        std::swap(s.order[i], s.order[j]);
    }
}

// The smaller part goes first, so that the calls never nest deeper than 12 for 4096 slots; the parts don't
// touch each other, so their order changes nothing.
void quicksort(slots s, std::int32_t lo, std::int32_t hi) {
    while (lo < hi) {
        const std::int32_t p = partition(s, lo, hi);
        if (p - lo < hi - p - 1) {
            quicksort(s, lo, p);
            lo = p + 1;
        } else {
            quicksort(s, p + 1, hi);
            hi = p;
        }
    }
}

// 1 or 0, with no branch. In double, where both sides of the comparisons are exact.
std::uint8_t in_window(double z, std::int32_t far, std::int32_t near) {
    return static_cast<std::uint8_t>(static_cast<int>(far < z) & static_cast<int>(z <= near));
}

} // namespace

void object_sort_faces_between(object& mesh, std::int32_t far, std::int32_t near) {
    const std::int32_t count = faces_in_use(mesh);
    for (std::int32_t slot = 0; slot < count; ++slot) {
        const auto i = static_cast<std::size_t>(slot);
        object_face& face = mesh.faces[i];
        mesh.sort_order[i] = slot;
        if (std::max({face.a, face.b, face.c}) >= object_capacity) { // set by hand: such a face is hidden
            mesh.sort_key[i] = 0;
            face.visible = 0;
            continue;
        }
        const float a = mesh.world_vertices[face.a].z;
        const float b = mesh.world_vertices[face.b].z;
        const float c = mesh.world_vertices[face.c].z;
        mesh.sort_key[i] = trunc_to_int(a + b + c);
        face.visible = in_window(a, far, near) & in_window(b, far, near) & in_window(c, far, near);
    }
    quicksort({mesh.sort_key.data(), mesh.sort_order.data()}, 0, count - 1);
}

void object_sort_faces(object& mesh) {
    object_sort_faces_between(mesh, -1024, -92);
}

void object_sort_vertices(object& mesh) {
    const std::int32_t count = vertices_in_use(mesh);
    for (std::int32_t slot = 0; slot < count; ++slot) {
        const auto i = static_cast<std::size_t>(slot);
        const float z = mesh.world_vertices[i].z;
        mesh.sort_order[i] = slot;
        mesh.sort_key[i] = trunc_to_int(z);
        mesh.faces[i].visible = in_window(z, -1024, 0);
    }
    quicksort({mesh.sort_key.data(), mesh.sort_order.data()}, 0, count - 1);
}
