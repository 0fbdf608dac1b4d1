// The movements in the order in which they run.
#pragma once

#include <span>

#include "driver/frame_loop.h"

std::span<const movement> movement_chain();

// The movement that a run without keys is in at time `t`; null when all timed ones are over.
const movement* movement_at(double t);
