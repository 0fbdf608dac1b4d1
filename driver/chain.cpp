#include "driver/chain.h"

#include "driver/movement1.h"

namespace {

constexpr movement chain[] = {
    {.draw = movement1_draw, .end_time = movement1_end},
};

} // namespace

std::span<const movement> movement_chain() {
    return chain;
}

const movement* movement_at(double t) {
    for (const movement& each : chain)
        if (t < each.end_time) return &each;
    return nullptr;
}
