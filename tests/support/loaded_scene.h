// Scene files given to the loader, from a path and from memory.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include <gtest/gtest.h>

#include "morvane/base/log.h"
#include "morvane/scene/loader_3ds/reader.h"
#include "tests/support/captured_output.h"
#include "tests/support/scene_text.h"
#include "tests/support/temp_file.h"

// Switches the log on for as long as it lives; lines go to standard output.
struct logging {
    explicit logging(std::uint32_t mask) {
        log_channel = {.enabled = true, .level_mask = mask, .to_stdout = true};
    }
    ~logging() { log_channel = {}; }
    logging(const logging&) = delete;
    logging& operator=(const logging&) = delete;
};

// A scene, and what came of the load that filled it.
struct loaded_scene {
    moscene scene;
    bool result = false;
    std::string printed; // on standard output, the log's lines among it

    std::string text() const { return scene_text(scene); }
};
using loaded_pointer = std::unique_ptr<loaded_scene>;

template<typename Load>
loaded_pointer load_scene(std::uint32_t log_mask, Load load) {
    auto loaded = std::make_unique<loaded_scene>();
    const logging on(log_mask);
    captured_output output;
    loaded->result = load(loaded->scene);
    loaded->printed = output.out();
    return loaded;
}

inline loaded_pointer load_from_memory(std::span<const std::uint8_t> bytes, std::uint32_t log_mask = 0) {
    return load_scene(log_mask, [bytes](moscene& scene) {
        sceneloader_3ds loader;
        return loader.load_stream(scene, bytes);
    });
}

inline loaded_pointer load_from_file(std::span<const std::uint8_t> bytes, std::uint32_t log_mask = 0) {
    const temp_folder folder;
    const std::string path = folder.write("scene.3ds", bytes);
    return load_scene(log_mask, [&path](moscene& scene) {
        sceneloader_3ds loader;
        return loader.load_file(scene, path);
    });
}

// From memory; reading it from a file must come to the same.
inline loaded_pointer load_both_ways(std::span<const std::uint8_t> bytes, std::uint32_t log_mask = 0) {
    loaded_pointer loaded = load_from_memory(bytes, log_mask);
    const loaded_pointer other = load_from_file(bytes, log_mask);
    EXPECT_EQ(loaded->result, other->result);
    EXPECT_EQ(loaded->text(), other->text());
    EXPECT_EQ(loaded->text().find(broken_records), std::string::npos);
    EXPECT_EQ(loaded->printed, other->printed);
    return loaded;
}
