// What every reader of scene files offers. A loader is made for one load.
#pragma once

#include <cstdint>
#include <span>
#include <string>

class moscene;

class sceneloader {
  public:
    sceneloader() = default;
    sceneloader(const sceneloader&) = delete;
    sceneloader& operator=(const sceneloader&) = delete;

    // Reads the file at `path` into `target`. False if it can't be opened or isn't a scene of this type; the
    // log channel says so, and `target` stays as it was.
    virtual bool load_file(moscene& target, const std::string& path) = 0;

    // The place of a third kind of source, which no loader has: does nothing and returns true.
    virtual bool load_packed(moscene& target, const std::string& pack, const std::string& name) = 0;

    // Reads a scene that lies in memory, whose size is taken from the data's own first length. For blocks of
    // which nobody knows the size; null counts as a block that isn't a scene.
    virtual bool load_stream(moscene& target, const std::uint8_t* block) = 0;

    // The same where the size is known: nothing outside `block` is read, whatever it holds.
    virtual bool load_stream(moscene& target, std::span<const std::uint8_t> block) = 0;

    virtual ~sceneloader() = default;
};
