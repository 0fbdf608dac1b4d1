// Windows of time, as the scores open their steps.
#pragma once

// Whether a window that holds its start but not its end is open at `t`.
constexpr bool within(double t, double start, double end) {
    return t >= start && t < end;
}

// Whether a window that holds neither of its bounds is open at `t`.
constexpr bool inside(double t, double start, double end) {
    return t > start && t < end;
}
