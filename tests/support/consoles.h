// What tests of consoles and surfaces share.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

#include "morvane/platform/console/ptc.h"

inline const ptc::Format rgb(32, 0xff0000, 0xff00, 0xff, 0);

template<typename Action>
ptc::DynamicError::Kind kind_raised(Action action) {
    try {
        action();
    } catch (const ptc::DynamicError& error) {
        EXPECT_STRNE(error.what(), "");
        return error.kind();
    }
    ADD_FAILURE() << "nothing was raised";
    return {};
}

template<typename Action>
std::string on_standard_error(Action action) {
    testing::internal::CaptureStderr();
    action();
    return testing::internal::GetCapturedStderr();
}

// Pixels that all differ.
inline void number_pixels(ptc::BaseSurface& surface) {
    std::uint32_t* pixels = surface.lock();
    std::iota(pixels, pixels + surface.width() * surface.height(), 1U);
    surface.unlock();
}

inline std::vector<std::uint32_t> pixels_of(ptc::BaseSurface& surface) {
    const std::uint32_t* first = surface.lock();
    std::vector<std::uint32_t> pixels(first, first + surface.width() * surface.height());
    surface.unlock();
    return pixels;
}
