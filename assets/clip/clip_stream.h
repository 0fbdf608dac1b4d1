// The stream that the meteor lies in: threads of light, let go from many nozzles upstream and carried along
// like smoke in a wind tunnel. A thread is drawn through its beads, which leave the nozzle one by one.
//
// The flow is that of a perfect fluid around a sphere (Lamb, "Hydrodynamics", 1932, art. 96) with a slower
// wake and, on top of it, turbulence without sources: a sum of random waves that swing across their own
// direction (Kraichnan, "Diffusion by a random velocity field", 1970). All of it repeats with the loop.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "assets/clip/clip_space.h"

namespace assets::clip {

inline constexpr float stream_speed = 1.5F; // where nothing disturbs it, in units a second
inline constexpr float body_radius = 1.04F; // of the sphere that it flows around

// How far a place lies in the meteor's wake, 0 to 1.
float wake_at(point p);

// A field of velocities, about 1 strong, that repeats after 1 in all directions.
class turbulence {
  public:
    explicit turbulence(std::uint32_t seed);
    point at(point p) const;

  private:
    std::vector<std::array<float, 4>> grid_; // the fourth is there for alignment only
};

struct thread_kind {
    point nozzle;
    float strength; // of its light
    float hue;      // 0 to 1, between the colours of the stream
};

class stream {
  public:
    static constexpr int threads = 480;
    static constexpr int beads = 132;    // on a thread; number 0 is the youngest
    static constexpr int releases = 264; // of beads, in a loop
    static constexpr int warm_up = 270;  // frames until every bead in sight has left its nozzle
    using snapshot = std::vector<point>; // [thread * beads + bead]

    // For a loop of `frames` frames, `rate` of them a second.
    stream(int frames, int rate);

    // Carries the threads from `first` to before `last` on from frame `frame` - 1 to `frame` of the loop
    // (from -`warm_up` on) and copies their beads to `picture`. Different ranges of threads touch different
    // memory.
    void advance(int first, int last, int frame, snapshot& picture);

    // The share of a bead's life that is over in a frame, 0 to 1.
    float age(int bead, int frame) const;
    // A bead's own light, which goes along with it.
    float glow(int thread, int bead, int frame) const;

    const thread_kind& kind(int thread) const { return kinds_[static_cast<std::size_t>(thread)]; }

  private:
    int newest(int frame) const; // number of the last bead that was let go by then
    point velocity(point p, float turn) const;
    void carry(std::size_t bead, float turn);

    int frames_;
    float seconds_; // of a frame
    turbulence coarse_{11};
    turbulence fine_{12};
    std::vector<thread_kind> kinds_;
    std::vector<std::uint8_t> glows_; // [thread * releases + release]
    std::vector<point> places_;       // [thread * beads + release mod beads]
    std::vector<point> last_velocities_;
};

} // namespace assets::clip
