// The camera's way: once round the meteor, from upstream through the side to the wake and back, wide at the
// start and close half-way.
#include "assets/clip/clip_space.h"

namespace assets::clip {

camera camera_at(float turn) {
    const float a = turn * 2 * pi;
    const float angle = a + 0.9F + 0.35F * std::sin(a * 2 + 0.4F); // 0: upstream
    const float distance = 6.7F + 1.0F * std::cos(a);
    const float height = 1.3F * std::sin(angle + 0.6F) + 0.5F;

    camera c{};
    c.eye = {-std::cos(angle) * distance, height, std::sin(angle) * distance};
    const point target{0.35F * std::sin(angle) * std::sin(angle), 0, 0};
    c.forward = normalised(target - c.eye);
    const point level = normalised(cross(c.forward, {0, 1, 0}));
    const point upright = cross(level, c.forward);
    const float roll = 0.22F * std::sin(a + 1.2F);
    c.right = level * std::cos(roll) + upright * std::sin(roll);
    c.down = (upright * std::cos(roll) - level * std::sin(roll)) * -1;
    c.focal = 400;
    c.middle = {256, 136}; // of the panel's window
    return c;
}

} // namespace assets::clip
