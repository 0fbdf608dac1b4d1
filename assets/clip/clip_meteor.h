// The meteor of the clip: what it hides and what it shines.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "assets/clip/clip_exposure.h"
#include "assets/clip/clip_space.h"
#include "assets/forms/mesh_kit.h"

namespace assets::clip {

// The body itself, the same for all frames. Its largest radius is 1.
class meteor {
  public:
    meteor();

    struct plate { // a triangle from a plate's border to its middle
        point a, b, middle;
        point normal;
    };
    const std::vector<plate>& plates() const { return plates_; }

  private:
    std::vector<plate> plates_;
};

// What one frame sees of it, in four samples a pixel.
class meteor_view {
  public:
    meteor_view();

    // Draws the meteor as it has turned `turn` of the loop (0 to 1), with its borders glowing by `pulse` (0
    // to 1).
    void draw(const meteor& body, const camera& from, float turn, float pulse);

    // Whether something at `depth` is behind the meteor at a pixel position.
    bool hides(float x, float y, float depth) const;

    // Puts the drawn meteor before what `target` holds so far.
    void expose(exposure& target) const;

  private:
    static constexpr std::int32_t fine = 2; // samples across a pixel
    static constexpr std::int32_t width = clip_width * fine;
    static constexpr std::int32_t height = clip_height * fine;
    struct corner {
        float x, y, inverse_depth;
    };
    void fill(const std::array<corner, 3>& corners, rgb face, rgb border, float border_width);

    std::vector<float> inverse_depth_; // 0: nothing there
    std::vector<rgb> light_;
    std::int32_t left_ = 0, top_ = 0, right_ = 0, bottom_ = 0; // what is drawn on, in samples
};

} // namespace assets::clip
