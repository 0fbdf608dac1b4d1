// One frame of the clip: night, meteor, and the threads of the stream.
#pragma once

#include <vector>

#include "assets/clip/clip_exposure.h"
#include "assets/clip/clip_meteor.h"
#include "assets/clip/clip_stream.h"
#include "assets/forms/canvas.h"

namespace assets::clip {

// What is far away and stays in its place: faint clouds and stars, by direction.
class night_sky {
  public:
    night_sky();

    // Falls on `target` wherever `view` hides nothing.
    void expose(exposure& target, const camera& from, const meteor_view& view) const;

  private:
    struct star {
        point direction;
        rgb light;
    };
    picture clouds_; // all around by all up and down
    std::vector<star> stars_;
};

// What one worker needs to paint frames, one after the other.
class painter {
  public:
    painter(const stream& flow, const meteor& body, const night_sky& sky);

    // Paints `frame`, whose beads are in `beads`, as R, G, B for each pixel, mirrored left to right.
    void paint(int frame, const stream::snapshot& beads, std::vector<std::uint8_t>& bytes);

  private:
    struct bead {
        seen at;
        rgb light;      // on each pixel of the thread's length
        float softness; // 0 sharp, 1 out of focus
    };
    void find_beads(int thread, int frame, const camera& from, const point* places);
    void draw_thread(const point* places);
    void draw_stretch(const bead& before, const bead& a, const bead& b, const bead& after);

    const stream& flow_;
    const meteor& body_;
    const night_sky& sky_;
    exposure film_;
    meteor_view view_;
    std::vector<bead> line_; // the thread in hand
};

} // namespace assets::clip
