// 3D Studio files in memory, chunk by chunk: for tests and for the seeds of the fuzz target.
//
//     const scene_bytes file =
//         chunk(0x4d4d).add(chunk(0x3d3d).add(object_block("Box", triangles().add(vertices({{1, 2,
//         3}}))))).bytes();
//
// Nothing is checked: what is wrong in a file is what a test wants to be wrong.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string_view>
#include <vector>

namespace scene_writer {

using scene_bytes = std::vector<std::uint8_t>;

// An id, a length and a body that grows with each call.
class chunk {
  public:
    explicit chunk(std::uint16_t chunk_id) : id(chunk_id) {}

    chunk& u8(std::initializer_list<unsigned> values) { return append(1, values); }
    chunk& u16(std::initializer_list<unsigned> values) { return append(2, values); }
    chunk& u32(std::initializer_list<unsigned> values) { return append(4, values); }
    chunk& f32(std::initializer_list<float> values) {
        for (const float value : values)
            append(4, {std::bit_cast<std::uint32_t>(value)});
        return *this;
    }
    // The characters and a NUL.
    chunk& text(std::string_view characters) { return raw(characters).u8({0}); }
    // The characters alone.
    chunk& raw(std::string_view characters) {
        body.insert(body.end(), characters.begin(), characters.end());
        return *this;
    }
    chunk& add(const chunk& child) {
        const scene_bytes all = child.bytes();
        body.insert(body.end(), all.begin(), all.end());
        return *this;
    }
    // A length field that doesn't follow the body.
    chunk& lie(std::uint32_t length) {
        false_length = length;
        return *this;
    }

    scene_bytes bytes() const {
        chunk header(id);
        header.u16({id}).u32({false_length.value_or(static_cast<std::uint32_t>(body.size() + 6))});
        header.body.insert(header.body.end(), body.begin(), body.end());
        return header.body;
    }

  private:
    chunk& append(int width, std::initializer_list<unsigned> values) {
        for (const unsigned value : values)
            for (int byte = 0; byte < width; ++byte)
                body.push_back(static_cast<std::uint8_t>(value >> (8 * byte)));
        return *this;
    }

    std::uint16_t id;
    scene_bytes body;
    std::optional<std::uint32_t> false_length;
};

// A whole file of what stands in its two halves.
inline scene_bytes scene_file(std::initializer_list<chunk> objects, std::initializer_list<chunk> nodes = {}) {
    chunk world(0x3d3d), keyframer(0xb000), all(0x4d4d);
    for (const chunk& each : objects)
        world.add(each);
    for (const chunk& each : nodes)
        keyframer.add(each);
    if (objects.size() != 0) all.add(world);
    if (nodes.size() != 0) all.add(keyframer);
    return all.bytes();
}

inline chunk object_block(std::string_view name, const chunk& content) {
    return chunk(0x4000).text(name).add(content);
}

// 0x4100, to which the arrays are added.
inline chunk triangles(std::initializer_list<chunk> arrays = {}) {
    chunk all(0x4100);
    for (const chunk& each : arrays)
        all.add(each);
    return all;
}

inline chunk vertices(const std::vector<std::array<float, 3>>& places) {
    chunk all(0x4110);
    all.u16({static_cast<unsigned>(places.size())});
    for (const auto& [x, y, z] : places)
        all.f32({x, y, z});
    return all;
}

// Corners a, b, c and the flag word of each face.
inline chunk faces(const std::vector<std::array<unsigned, 4>>& corners) {
    chunk all(0x4120);
    all.u16({static_cast<unsigned>(corners.size())});
    for (const auto& [a, b, c, flag] : corners)
        all.u16({a, b, c, flag});
    return all;
}

inline chunk material_group(std::string_view material, const std::vector<unsigned>& indices) {
    chunk all(0x4130);
    all.text(material).u16({static_cast<unsigned>(indices.size())});
    for (const unsigned index : indices)
        all.u16({index});
    return all;
}

inline chunk mapping(const std::vector<std::array<float, 2>>& pairs) {
    chunk all(0x4140);
    all.u16({static_cast<unsigned>(pairs.size())});
    for (const auto& [u, v] : pairs)
        all.f32({u, v});
    return all;
}

inline chunk colour_bytes(unsigned r, unsigned g, unsigned b) {
    return chunk(0x0011).u8({r, g, b});
}
inline chunk colour_floats(float r, float g, float b) {
    return chunk(0x0010).f32({r, g, b});
}
inline chunk percentage(unsigned whole) {
    return chunk(0x0030).u16({whole});
}
inline chunk fraction(float part) {
    return chunk(0x0031).f32({part});
}

inline chunk map_chunk(std::uint16_t id, std::string_view file_name, unsigned percent) {
    return chunk(id).add(percentage(percent)).add(chunk(0xa300).text(file_name));
}

// The first chunk of a node tag.
inline chunk node_header(std::string_view name, unsigned parent = 0xffff) {
    return chunk(0xb010).text(name).u16({0, 0, parent});
}

// A track without keys; `key` adds one.
inline chunk track(std::uint16_t id, unsigned key_count) {
    return chunk(id).u16({0, 0, 0, 0, 0, key_count, 0});
}
// `spline` holds as many values as `flags` has of its lower five bits.
inline chunk& key(chunk& to, unsigned frame, unsigned flags, std::initializer_list<float> spline,
                  std::initializer_list<float> value) {
    return to.u16({frame, 0, flags}).f32(spline).f32(value);
}

} // namespace scene_writer
