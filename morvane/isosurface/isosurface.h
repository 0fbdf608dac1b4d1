// A surface of metaballs: a few spheres float about inside a cube, and the level set of their summed field is
// rebuilt as a mesh on demand.
//
//     isosurface surface(3, 60);
//     surface.set_gridsize(20);
//     ... surface.spheres_step(dt); draw(surface.polygonise());   // each frame
//
// The cube reaches from -1 to +1 on each axis. A grid of size n cuts each axis into n cells, so there are
// n + 1 sample points an axis, numbered 0 to n.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "morvane/math/vector3d.h"
#include "morvane/scene/mesh.h"

struct sphere {
    vector3d position{}; // centre in field coordinates
    vector3d velocity{}; // units per unit of time
    vector3d target{};   // what it steers to
    float strength = 1;  // numerator of its term of the field
    float timer = 0;     // time left until a new target is drawn
    float threshold = 0; // level of the surface walk that starts here
};

class isosurface {
  public:
    static constexpr std::int32_t mesh_capacity = 10000; // vertices, and faces
    static constexpr std::int32_t largest_grid = 256;

    struct mesh mesh; // the output; drawn like any other once a scene has it (`moscene::add_mesh`)
    std::vector<sphere> spheres;
    std::int32_t sphere_count = 0;
    std::int32_t vertex_count = 0, face_count = 0; // of the pass that is running
    std::int32_t grid_size = 0;                    // n; 0 until `set_gridsize`
    float cell_size = 0;                           // 2 / n
    std::int32_t plane_stride = 0;                 // (n + 1)^2: from plane to plane of the samples
    std::int32_t cell_plane = 0;                   // n * n: the same for the cells

    // No spheres and no mesh arrays; nothing can be polygonised.
    isosurface();

    // As `init_balls`, and a mesh with room for `mesh_capacity` vertices and faces.
    isosurface(std::int32_t balls, float threshold);

    ~isosurface();
    isosurface(const isosurface&) = delete;
    isosurface& operator=(const isosurface&) = delete;

    // Makes `balls` spheres (0 for less), all with that threshold, seeds the random numbers with the time of
    // day and prints the spheres' targets on standard output. Always 1.
    int init_balls(std::int32_t balls, float threshold);

    // A sphere at rest in the middle, with a random target and timer.
    void sphere_init(sphere& ptr_sphere);

    // Sets n, held to 1 to `largest_grid`, and gets the memory of the grid; what an earlier call got is
    // freed.
    void set_gridsize(std::int32_t size);

    std::int32_t get_spheres() const;

    // Moves each sphere: towards its target, at most 0.2 fast, at least one cell away from the cube's faces.
    // `dt` in the unit of time of the velocities.
    void spheres_step(float dt);

    // The sum of strength / squared distance over all spheres; the square is at least 0.0001.
    float field(float x, float y, float z) const;

    // From field coordinate to the nearest sample number, and back.
    std::int32_t grid_of(float p) const;
    float world_of(std::int32_t i) const;

    // Rebuilds `mesh` out of the spheres as they stand: follows the surface from cell to cell, beginning
    // below each sphere. All coordinates are 100 times those of the field. A full mesh ends the pass with the
    // triangles that have found room. Allocates nothing.
    struct mesh* polygonise();

  private:
    struct cell {
        std::int32_t x, y, z;
    };

    void sphere_step(sphere& s, float dt);
    bool in_grid(const cell& at) const;
    std::size_t cell_index(const cell& at) const;
    float sample(std::int32_t x, std::int32_t y, std::int32_t z);
    std::uint32_t process(const cell& at, float threshold);
    bool add_triangle(const std::int32_t* edges, const std::array<float, 8>& values, const cell& at,
                      float threshold, std::array<std::uint16_t, 12>& edge_vertices);
    void add_vertex(std::int32_t edge, const std::array<float, 8>& values, const cell& at, float threshold);
    void push_neighbours(const cell& at, std::uint32_t corner_case);
    void follow(const cell& start, float threshold);

    std::vector<float> samples;             // (n + 1)^3 field values,
    std::vector<std::uint8_t> sample_known; // 1 where they have been computed in this pass
    std::vector<std::uint8_t> cell_state;   // of the n^3 cells: untouched, done or on the stack
    std::vector<std::uint32_t> stack;       // cells to visit, one word each: no pass can overflow it
    std::int32_t stack_count = 0;
    bool full = false; // the mesh has no room for another triangle
};
