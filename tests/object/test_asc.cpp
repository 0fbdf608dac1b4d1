#include "morvane/object/asc_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/captured_output.h"
#include "tests/support/temp_file.h"

namespace {

// A square of two faces with all that an exporter writes around it.
const std::string square = R"(Ambient light color: Red=0.39 Green=0.39 Blue=0.39

Named object: "Square"
Tri-mesh, Vertices: 4     Faces: 2
Mapped
Vertex list:
Vertex 0:  X:0.0     Y:0     Z:0.000     U:0.0     V:1.0
Vertex 1:  X:10.     Y:0     Z:-.0       U:1.0     V:1.003
Vertex 2:  X:1e1     Y:10    Z:+0.0      U:1.0     V:-0.0075
Vertex 3:  X:0.0     Y:10    Z:0         U:0.5     V:0.0
Face list:
Face 0:    A:0 B:1 C:2 AB:1 BC:1 CA:0
Material:"grey"
Smoothing:  1
Face 1:    A:0 B:2 C:3 AB:0 BC:257 CA:-1
Camera (24.00mm)
Position:  X:1.5 Y:-2 Z:3
Target:    X:4 Y:5.25 Z:-6
)";

std::unique_ptr<object> new_object(bool mapping = true, bool camera = false) {
    auto mesh = std::make_unique<object>();
    mesh->read_mapping = mapping ? 1 : 0;
    mesh->read_camera = camera ? 1 : 0;
    return mesh;
}

std::string replaced(std::string text, const std::string& what, const std::string& by) {
    const std::size_t place = text.find(what);
    EXPECT_NE(place, std::string::npos) << what;
    return text.replace(place, what.size(), by);
}

void expect_place(const object_vertex& v, float x, float y, float z) {
    EXPECT_TRUE(v.x == x && v.y == y && v.z == z) << v.x << ' ' << v.y << ' ' << v.z;
}

void expect_face(const object_face& face, std::array<int, 6> expected) {
    EXPECT_EQ((std::array<int, 6>{face.a, face.b, face.c, face.ab, face.bc, face.ca}), expected);
}

// Three vertices, one face; the corners as they stand in the file.
std::string triangle(const std::string& a, const std::string& b, const std::string& c) {
    std::string text = "object t Vertices 3 Faces 1 list:";
    for (const std::string& place : {a, b, c})
        text += " Vertex 0 : " + place;
    return text + " Face list: Face 0 : A:0 B:1 C:2 AB:1 BC:1 CA:1";
}

// The same scanning with the C library's own, on a text that holds all that is looked for.
class c_reader {
  public:
    explicit c_reader(std::string& text) : file(fmemopen(text.data(), text.size(), "rb")) {}
    ~c_reader() { std::fclose(file); }
    c_reader(const c_reader&) = delete;
    c_reader& operator=(const c_reader&) = delete;

    void keyword(const char* word) {
        while (std::strncmp(token, word, std::strlen(word)) != 0)
            check(std::fscanf(file, "%99s", token));
    }
    void entry(const char* word) {
        int number = 0;
        keyword(word);
        check(std::fscanf(file, "%d", &number) + std::fscanf(file, "%99s", token) - 1);
    }
    void letter(char wanted) {
        int c = 0;
        while (c != wanted)
            if (c = std::fgetc(file); c == EOF) throw std::runtime_error("the text ends");
    }
    float real(char wanted) {
        float value = 0;
        letter(wanted);
        std::fgetc(file);
        check(std::fscanf(file, "%f", &value));
        return value;
    }
    int whole(char wanted) {
        int value = 0;
        letter(wanted);
        std::fgetc(file);
        check(std::fscanf(file, "%d", &value));
        return value;
    }
    int count(const char* word) {
        int value = 0;
        keyword(word);
        check(std::fscanf(file, "%d", &value));
        return value;
    }

  private:
    static void check(int read) {
        if (read != 1) throw std::runtime_error("nothing read");
    }
    std::FILE* file;
    char token[100] = "";
};

void expect_as_c_reads_it(const object& mesh, std::string text) {
    c_reader in(text);
    in.keyword("object");
    ASSERT_EQ(mesh.vertex_count, in.count("Vertices"));
    ASSERT_EQ(mesh.face_count, in.count("Faces"));
    in.keyword("list:");
    for (std::size_t i = 0; i < static_cast<std::size_t>(mesh.vertex_count); ++i) {
        in.entry("Vertex");
        const object_vertex& v = mesh.model_vertices[i];
        for (const auto& [letter, value] :
             {std::pair{'X', v.x}, {'Y', v.y}, {'Z', v.z}, {'U', v.u}, {'V', v.v}})
            ASSERT_EQ(value, in.real(letter));
    }
    in.keyword("Face");
    in.keyword("list:");
    for (std::size_t i = 0; i < static_cast<std::size_t>(mesh.face_count); ++i) {
        in.entry("Face");
        const object_face& f = mesh.faces[i];
        for (const auto& [letter, index] : {std::pair{'A', f.a}, {'B', f.b}, {'C', f.c}})
            ASSERT_EQ(index, in.whole(letter));
        for (const auto& [pair, flag] : {std::pair{"AB", f.ab}, {"BC", f.bc}, {"CA", f.ca}}) {
            in.letter(pair[0]);
            ASSERT_EQ(flag, std::clamp(in.whole(pair[1]), 0, 255));
        }
    }
    for (const auto& [words, place] : {std::pair{std::pair{"Camera", "Position"}, mesh.camera_position},
                                       {{"Target", "Target"}, mesh.camera_target}}) {
        in.keyword(words.first);
        in.keyword(words.second);
        for (const auto& [letter, value] : {std::pair{'X', place.x}, {'Y', place.y}, {'Z', place.z}})
            ASSERT_EQ(value, in.real(letter));
    }
}

} // namespace

TEST(asc, a_whole_file) {
    const temp_folder folder;
    captured_output printed;
    const auto mesh = new_object(true, true);
    mesh->wire_lit = mesh->fill_lit = 1;
    mesh->wire_red = 77;
    mesh->faces[0].visible = 1;
    ASSERT_TRUE(object_load(folder.write("square.asc", square), *mesh));
    EXPECT_EQ(printed.out() + printed.err(), "");

    EXPECT_STREQ(mesh->name, "\"Square\"");
    EXPECT_EQ(mesh->vertex_count, 4);
    EXPECT_EQ(mesh->face_count, 2);
    expect_place(mesh->model_vertices[2], 10, 10, 0);
    expect_place(mesh->world_vertices[2], 10, 10, 0);
    EXPECT_EQ(mesh->model_vertices[1].v, 1.003F);
    EXPECT_EQ(mesh->world_vertices[1].tu, 256);
    EXPECT_EQ(mesh->world_vertices[1].tv, 256); // 256.77
    EXPECT_EQ(mesh->world_vertices[2].tv, -1);  // -1.92
    EXPECT_EQ(mesh->world_vertices[3].tu, 128);
    expect_face(mesh->faces[0], {0, 1, 2, 1, 1, 0});
    expect_face(mesh->faces[1], {0, 2, 3, 0, 255, 0}); // 257 is not 1 and draws nothing
    EXPECT_EQ(mesh->faces[0].visible, 0);
    expect_place(mesh->model_normals[0], 0, 0, 256);
    expect_place(mesh->model_normals[1], 0, 0, 256);
    EXPECT_EQ(mesh->sort_order[1], 1);
    expect_place(mesh->camera_position, 1.5F, -2, 3);
    expect_place(mesh->camera_target, 4, 5.25F, -6);
    EXPECT_EQ(mesh->wire_lit + mesh->fill_lit, 0);
    EXPECT_EQ(mesh->wire_red, 77);

    // Without the two switches the same text gives the bare mesh, and nothing is left of the first load.
    mesh->read_camera = mesh->read_mapping = 0;
    mesh->camera_target.x = 99;
    ASSERT_EQ(object_read_asc(square, *mesh), "");
    EXPECT_EQ(mesh->world_vertices[1].tu, 0);
    EXPECT_EQ(mesh->model_vertices[1].v, 0);
    EXPECT_EQ(mesh->camera_target.x, 99);
}

TEST(asc, keywords_and_letters_wherever_they_stand) {
    const auto mesh = new_object(false);
    // No blanks behind numbers, entries out of order, text between them, keywords that go on, more objects.
    const std::string text =
        "objects? yes\vVertices:::\t3Faces-- \r\n 1 Vertices 9 list:; "
        "Vertex 7: X 1Y=2Z:3 Vertexes -5 x X: \n4 Y:5 colour:Yes Z:6\n"
        "vertex 1: X:0 Y:0 Z:0 Vertex 0x1: X:7 Y:8 Z:9 W:4"
        "\nFacet list:: Face 44444444444444444444: A:2 then B:+1, C:-0 CAB:1 of BC:01 CA:2"
        "\nNamed object: other Vertices: 1 Faces: 1";
    ASSERT_EQ(object_read_asc(text, *mesh), "");
    EXPECT_STREQ(mesh->name, "yes");
    EXPECT_EQ(mesh->vertex_count, 3);
    EXPECT_EQ(mesh->face_count, 1);
    expect_place(mesh->model_vertices[0], 1, 2, 3);
    expect_place(mesh->model_vertices[1], 4, 5, 6);
    expect_place(mesh->model_vertices[2], 7, 8, 9);
    expect_face(mesh->faces[0], {2, 1, 0, 1, 1, 2});
}

TEST(asc, tokens_end_after_99_characters) {
    const auto mesh = new_object(false);
    const std::string rest = " t Vertices 0 Faces 0 list: Face list:";
    EXPECT_EQ(object_read_asc(std::string(99, 'x') + "object" + rest, *mesh), "");
    EXPECT_NE(object_read_asc(std::string(98, 'x') + "object" + rest, *mesh), "");
    EXPECT_EQ(object_read_asc(std::string("\0object object", 14) + rest, *mesh), "");
    // The keyword is looked for in the token read last: a name doesn't count as one.
    EXPECT_NE(object_read_asc("object Vertices 0 Faces 0 list: Face list:", *mesh), "");
}

TEST(asc, names_are_cut_to_their_field) {
    const auto mesh = new_object();
    std::memset(mesh->name, 'z', sizeof mesh->name);
    for (const std::size_t length : {1U, 18U, 19U, 20U, 21U, 150U}) {
        const std::string name = std::string(length - 1, 'n') + 'e';
        ASSERT_EQ(object_read_asc(replaced(square, "\"Square\"", name), *mesh), "");
        EXPECT_EQ(std::string(mesh->name, sizeof mesh->name).c_str(), name.substr(0, 19)) << length;
        EXPECT_EQ(mesh->name[19], 0);
    }
}

TEST(asc, normals_of_whole_units) {
    const auto mesh = new_object(false);
    const auto normal = [&](const std::string& a, const std::string& b, const std::string& c) {
        EXPECT_EQ(object_read_asc(triangle(a, b, c), *mesh), "");
        return mesh->model_normals[0];
    };
    expect_place(normal("X:0 Y:0 Z:0", "X:10 Y:0 Z:0", "X:10 Y:10 Z:0"), 0, 0, 256);
    expect_place(normal("X:0 Y:0 Z:0", "X:10 Y:10 Z:0", "X:10 Y:0 Z:0"), 0, 0, -256);
    // Edges (3.9, -4.9, 0.9) and (-1.5, 2.5, 7.2) count as (3, -4, 0) and (-1, 2, 7).
    const double length = std::sqrt(28.0 * 28 + 21 * 21 + 2 * 2);
    expect_place(normal("X:0 Y:0 Z:0", "X:3.9 Y:-4.9 Z:0.9", "X:2.4 Y:-2.4 Z:8.1"),
                 std::trunc(static_cast<float>(-28 / length * 256)),
                 std::trunc(static_cast<float>(-21 / length * 256)),
                 std::trunc(static_cast<float>(2 / length * 256)));
    // No length along any axis, no area.
    expect_place(normal("X:0 Y:0 Z:0", "X:0.9 Y:0.9 Z:0.9", "X:50 Y:50 Z:-50"), 0, 0, 0);
    expect_place(normal("X:1 Y:2 Z:3", "X:4 Y:5 Z:6", "X:7 Y:8 Z:9"), 0, 0, 0);
    // Beyond 32 bits, and beyond what an edge can hold.
    expect_place(normal("X:0 Y:0 Z:0", "X:50000 Y:0 Z:0", "X:50000 Y:50000 Z:0"), 0, 0, 256);
    expect_place(normal("X:0 Y:0 Z:0", "X:3e38 Y:0 Z:0", "X:3e38 Y:-3e38 Z:0"), 0, 0, -256);
    const object_vertex extreme =
        normal("X:3e38 Y:3e38 Z:-3e38", "X:-3e38 Y:3e38 Z:3e38", "X:-3e38 Y:-3e38 Z:-3e38");
    EXPECT_TRUE(std::isfinite(extreme.x) && std::isfinite(extreme.y) && std::isfinite(extreme.z));
}

TEST(asc, numbers) {
    const auto mesh = new_object(false);
    const auto read = [&](const std::string& number) {
        return object_read_asc(triangle("X:" + number + " Y:2 Z:3", "X:0 Y:0 Z:0", "X:0 Y:0 Z:0"), *mesh);
    };
    for (const char* good : {"0.1", "-.5", "+7", "3.", "1e5", "1E+5", "-2.5e-3", "16777217", "1e-50", "0e99",
                             "3.4028234e38", "0.000000000000000000000000000000000000000000001"}) {
        EXPECT_EQ(read(good), "") << good;
        EXPECT_EQ(mesh->model_vertices[0].x, std::strtof(good, nullptr)) << good;
    }
    for (const char* bad : {"", "-", "+-1", "--1", ".", "e5", "nan", "inf", "-infinity", "1e39", "-1e999",
                            "1e", "1e+", "0x10", "one", "\"1\"", ",5"}) {
        EXPECT_NE(read(bad), "") << bad;
        EXPECT_EQ(mesh->vertex_count, 0);
    }
}

TEST(asc, damaged_files_leave_the_object_empty_and_say_why) {
    const temp_folder folder;
    const std::array<std::array<std::string, 3>, 14> damages = {{
        {"Vertices: 4", "Vertices: 4097", "line 4: Vertices must be 0 to 4096, and not 4097"},
        {"Vertices: 4", "Vertices: -1", "line 4: Vertices must be 0 to 4096, and not -1"},
        {"Vertices: 4", "Vertices: 99999999999999999999",
         "line 4: Vertices must be 0 to 4096, and not 2147483647"},
        {"Vertices: 4", "Vertices: four", "line 4: no number where one belongs"},
        {"Vertices: 4", "Vertices: 5", "the file ends where \"Vertex\" is looked for"},
        {"Faces: 2", "Faces: 4097", "line 4: Faces must be 0 to 4096, and not 4097"},
        {"Faces: 2", "Faces: -2147483648", "line 4: Faces must be 0 to 4096, and not -2147483648"},
        {"Faces: 2", "Faces: 3", "the file ends where \"Face\" is looked for"},
        {"B:2 C:3", "B:2 C:4", "line 15: no vertex 4 among 4"},
        {"A:0 B:1", "A:-1 B:1", "line 12: no vertex -1 among 4"},
        {"A:0 B:1", "A:65536 B:1", "line 12: no vertex 65536 among 4"},
        {"Vertex list", "Vertex", "the file ends where \"Vertex\" is looked for"},
        {"X:10.", "X:ten", "line 8: no number where one belongs"},
        {"Named object", "Named thing", "the file ends where \"object\" is looked for"},
    }};
    for (const auto& [what, by, reason] : damages) {
        const auto mesh = new_object();
        mesh->vertex_count = mesh->face_count = 3;
        const std::string path = folder.write("mesh.asc", replaced(square, what, by));
        captured_output printed;
        EXPECT_FALSE(object_load(path, *mesh));
        EXPECT_EQ(printed.err(), "morvane: " + path + ": " + reason + "\n");
        EXPECT_EQ(printed.out(), "");
        EXPECT_EQ(mesh->vertex_count, 0);
        EXPECT_EQ(mesh->face_count, 0);
    }
}

TEST(asc, files_that_are_none) {
    const temp_folder folder;
    const auto mesh = new_object();
    const std::string missing = folder.path("missing.asc");
    captured_output printed;
    EXPECT_FALSE(object_load(missing, *mesh));
    EXPECT_FALSE(object_load(folder.path().string(), *mesh));
    EXPECT_FALSE(object_load(folder.write("empty.asc", ""), *mesh));
    const std::string huge = folder.write("huge.asc", square);
    std::filesystem::resize_file(huge, (std::uintmax_t{64} << 20) + 1);
    EXPECT_FALSE(object_load(huge, *mesh));
    std::filesystem::resize_file(huge, std::uintmax_t{64} << 20);
    EXPECT_TRUE(object_load(huge, *mesh));
    EXPECT_EQ(printed.err(),
              "morvane: " + missing +
                  ": can't be opened: No such file or directory\nmorvane: " + folder.path().string() +
                  ": can't be read: Is a directory\nmorvane: " + folder.path("empty.asc") +
                  ": the file ends where \"object\" is looked for\nmorvane: " + huge +
                  ": is longer than 64 MiB\n");
}

TEST(asc, cut_at_every_byte) {
    const auto mesh = new_object(true, true);
    const std::size_t needed = square.rfind("-6") + 2;
    for (std::size_t length = 0; length < needed; ++length) {
        // Exactly as much memory as there is text, so that a read beyond is seen.
        const std::vector<char> cut(square.begin(), square.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_NE(object_read_asc({cut.data(), cut.size()}, *mesh), "") << length;
        EXPECT_EQ(mesh->vertex_count + mesh->face_count, 0);
    }
    EXPECT_EQ(object_read_asc(square.substr(0, needed), *mesh), "");
}

TEST(asc, rubbish_in_any_place) {
    const auto mesh = new_object(true, true);
    std::mt19937 random(11);
    int whole = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string text = square;
        for (int k = 0; k <= round % 4; ++k)
            text[random() % text.size()] =
                k % 2 == 0 ? text[random() % text.size()] : static_cast<char>(random() % 256);
        if (!object_read_asc(text, *mesh).empty()) continue;
        ++whole;
        ASSERT_NO_THROW(expect_as_c_reads_it(*mesh, text)) << text;
        for (std::int32_t i = 0; i < mesh->face_count; ++i) {
            const object_face& face = mesh->faces[static_cast<std::size_t>(i)];
            ASSERT_LT(std::max({face.a, face.b, face.c}), mesh->vertex_count);
        }
    }
    EXPECT_GT(whole, 300); // most of the text may be anything
    EXPECT_LT(whole, 2700);
}
