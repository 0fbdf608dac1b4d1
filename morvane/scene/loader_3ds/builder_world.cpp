// Colours of the world and the range of the animation.
#include "morvane/base/log.h"
#include "morvane/scene/loader_3ds/builder.h"
#include "morvane/scene/loader_3ds/child_chunks.h"
#include "morvane/scene/loader_3ds/reader.h"
#include "morvane/scene/moscene.h"

void build_background(sceneloader_3ds& in) {
    const auto colour = read_child_colour(in, colour_form::floats);
    if (!colour) return;
    in.log_text(log_debug, "Solid background color => (%f, %f, %f)", colour->r, colour->g, colour->b);
}

void build_ambient(sceneloader_3ds& in) {
    const auto colour = read_child_colour(in, colour_form::floats);
    if (!colour) return;
    in.log_text(log_debug, "Ambient color => (%f, %f, %f)", colour->r, colour->g, colour->b);
    in.scene->set_ambient(static_cast<float>(colour->r), static_cast<float>(colour->g),
                          static_cast<float>(colour->b));
}

void build_frame_range(sceneloader_3ds& in) {
    const std::int32_t first = in.read_i32();
    const std::int32_t last = in.read_i32();
    in.log_text(log_debug, "Frames %ld - %ld", static_cast<long>(first), static_cast<long>(last));
    if (in.cut_short()) return;
    in.scene->start_frame = first;
    in.scene->end_frame = last;
}
