// Reads 3D Studio files: a tree of chunks, each an id, a length and a body, all numbers little-endian.
//
// The reader takes bodies field by field and finds the next header wherever the last field ended. The length
// of a chunk serves to skip it and to tell when a level ends; so the chunks inside a face array or a light
// arrive at the level of that array or light. What a file says of itself is not believed: whatever the bytes,
// a read ends at the latest with the data, takes memory in proportion to them and touches nothing else.
//
// reader.cpp has the entry points and the primitives, walkers.cpp descends the tree, and what becomes of each
// body stands in the files builder_*.cpp.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <vector>

#include "morvane/math/vector3d.h"
#include "morvane/scene/loader_3ds/name_index.h"
#include "morvane/scene/sceneloader.h"

struct camera;
struct light;
struct material;
struct mesh;
struct mokey_node;

class sceneloader_3ds : public sceneloader {
  public:
    bool load_file(moscene& target, const std::string& path) override;
    bool load_packed(moscene& target, const std::string& pack, const std::string& name_inside) override;
    bool load_stream(moscene& target, const std::uint8_t* block) override;
    bool load_stream(moscene& target, std::span<const std::uint8_t> block) override;
    ~sceneloader_3ds() override; // closes the file of a `load_file`, which stays open until then

    enum sources : std::uint8_t { from_file = 1, from_memory = 2 };
    using chunk_text = std::array<char, 256>;

    moscene* scene = nullptr;           // the target
    const std::uint8_t* data = nullptr; // the block of a `load_stream`, else null
    std::FILE* file = nullptr;          // the open file of a `load_file`, else null
    std::uint8_t source = 0;
    std::int32_t offset = 0;       // bytes consumed; beyond `size` once something was read past the end
    std::int32_t total = 0;        // what the main chunk says of its length
    chunk_text name{};             // the last string read, cut to the field
    std::int32_t name_length = 0;  // bytes that it took, with the final NUL
    std::int32_t node_counter = 0; // id of the next node
    std::int32_t size = 0;         // bytes in the data
    chunk_text object_name{};      // of the object block being read, whatever `name` holds meanwhile

    // The records of the scene by name.
    name_index<mesh> meshes;
    name_index<camera> cameras;
    name_index<light> lights;
    name_index<material> materials;

    // The nodes of this load by their ids, which rise by one and so belong to one node each. A tree that held
    // nodes before may have the same ids; there the scene searches.
    std::vector<mokey_node*> nodes;
    bool tree_was_empty = true;

    // The header read last and the one before. There is one of each in the process: one read runs at a time.
    static inline std::uint16_t chunk_id = 0;
    static inline std::uint32_t chunk_length = 0; // counts the 6 bytes of the header, too
    static inline std::uint16_t parent_id = 0;
    static inline std::uint32_t parent_length = 0;
    static inline std::uint16_t node_type = 0;     // of the node tag being read
    static inline std::array<char, 512> message{}; // text of the last log line

    // Primitives. Each reads at the current position and moves behind what it reads. What lies beyond the end
    // of the data reads as 0.
    std::uint8_t read_u8();
    std::uint16_t read_u16();
    std::int32_t read_i32();
    std::uint32_t read_u32();
    float read_float();
    vector3d read_vector();
    void read_float_over(float& value); // `value` stays where the data end before the float does
    // Into `name`, up to and including a NUL; the end of the data ends a name without one.
    void read_string();
    // False if the data don't hold the whole header.
    bool read_header();
    // Makes the header that was read last the next one again.
    void put_header_back() { header_waits = true; }
    void skip(std::int64_t count); // nothing if negative
    // To the end of the chunk whose header was just read. A length below 6 skips nothing.
    void skip_body();

    // Hands `each(bytes)` the next `count` records of `record_size` bytes, as many as the data have, and
    // moves behind all of them.
    template<typename Each>
    void read_records(std::int32_t count, std::size_t record_size, Each each);
    // `count`, or as many records of at least `record_size` bytes as can still follow. Logs a warning if
    // those are fewer. Ask it before you allocate.
    std::int32_t records_left(std::int32_t count, std::size_t record_size) const;

    std::int32_t bytes_left() const { return std::max(size - offset, 0); }
    bool cut_short() const { return offset > size; } // something was read past the end

    // True while another chunk follows in a level whose walker runs to `end`; its header is read then. `end`
    // lies 6 bytes behind the level's last.
    bool next_header(std::int64_t end);

    // Formats into `message` and logs it, not critical, if a sink takes this level.
    [[gnu::format(printf, 2, 3)]] static void log_text(std::uint32_t level, const char* format, ...);
    void log_known() const;
    void log_unknown() const;

  private:
    void start(moscene& target, sources new_source);
    bool read_scene();
    bool read_bytes(std::span<std::uint8_t> bytes);
    void advance(std::int64_t count);

    bool header_waits = false; // `put_header_back` was called
};

inline std::uint16_t little_u16(const std::uint8_t* bytes) {
    return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}
inline std::uint32_t little_u32(const std::uint8_t* bytes) {
    return std::uint32_t{little_u16(bytes)} | std::uint32_t{little_u16(bytes + 2)} << 16;
}
float little_float(const std::uint8_t* bytes);
vector3d little_vector(const std::uint8_t* bytes); // three floats

// The file's axes to the scene's, and back.
inline vector3d swap_yz(const vector3d& v) {
    return {.x = v.x, .y = v.z, .z = v.y};
}

template<typename Each>
void sceneloader_3ds::read_records(std::int32_t count, std::size_t record_size, Each each) {
    std::array<std::uint8_t, 4096> buffer;
    const std::size_t block = buffer.size() / record_size; // records in it
    const std::size_t there = static_cast<std::size_t>(bytes_left()) / record_size;
    const std::size_t all = static_cast<std::size_t>(count);
    for (std::size_t done = 0; done < std::min(all, there);) {
        const std::size_t records = std::min(std::min(all, there) - done, block);
        const std::span<std::uint8_t> bytes = std::span(buffer).first(records * record_size);
        if (!read_bytes(bytes)) std::ranges::fill(bytes, std::uint8_t{0});
        for (std::size_t at = 0; at < bytes.size(); at += record_size)
            each(bytes.data() + at);
        done += records;
    }
    if (all > there) skip(static_cast<std::int64_t>((all - there) * record_size));
}
