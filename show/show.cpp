#include "show/show.h"

#include <cstdlib>
#include <string>

#include "morvane/gtex/blend.h"
#include "morvane/gtex/patterns.h"
#include "morvane/gtex/plasma.h"
#include "morvane/gtex/tunnel.h"
#include "morvane/media/image_png.h"
#include "morvane/media/image_raw.h"
#include "morvane/media/video.h"
#include "morvane/object/asc_reader.h"
#include "morvane/object/transform.h"
#include "morvane/platform/time/winbase.h"
#include "show/data_files.h"
#include "show/scene_set_up.h"
#include "show/score/closing_routines.h"

namespace {

constexpr gtex show::*all_surfaces[] = {
    &show::screen_memory, &show::canvas,     &show::wire_layer,   &show::wire_trail,    &show::title_layer,
    &show::title_trail,   &show::title_fade, &show::white_frame,  &show::grey_frame,    &show::img_morvane,
    &show::img_presents,  &show::img_lorrim, &show::img_greets,   &show::img_cred,      &show::img_hum,
    &show::img_parental,  &show::img_cubev,  &show::img_violence, &show::img_velkadame, &show::img_accident,
    &show::spr_light,     &show::spr_light2, &show::spr_light3,   &show::spr_glow,      &show::tex_work,
    &show::tex_texture,   &show::tex_intro,  &show::tex_tunnel,   &show::tex_cube,      &show::video_frame,
};

gtex frame_surface(std::uint32_t colour) {
    return gtex_create(frame_width, frame_height, colour);
}

// What can't be read has been reported by now; the process ends as the reader of such a file would end it.
std::string readable(const char* file, int exit_code) {
    std::string path = data_path(file);
    if (!can_be_read(path)) std::exit(exit_code);
    return path;
}

gtex load_picture(const char* file) {
    return gtex_load_png(readable(file, 1));
}

void load_mask(gtex surface, const char* file) {
    gtex_read_mask(surface, readable(file, 0));
}

gtex load_raw(std::int32_t side, const char* file) {
    const gtex surface = gtex_create(side, side, 0);
    gtex_read_raw(surface, readable(file, 0));
    return surface;
}

gtex load_sprite(const char* file) {
    const gtex sprite = load_raw(32, file);
    gtex_flip(sprite); // the file's rows run from the bottom up
    return sprite;
}

void create_plasma(show& all) {
    all.plasma_a.resize(plasma_map_size);
    all.plasma_b.resize(plasma_map_size);
    plasma_tables_init(all.plasma_a, all.plasma_b);
}

// 250 points at random places of a cube around the origin.
void scatter_stars(object& stars) {
    const auto coordinate = [] { return static_cast<float>(winbase::rand() % 256 - 127); };
    stars.vertex_count = 250;
    for (std::size_t i = 0; i < 250; ++i) {
        object_vertex& star = stars.model_vertices[i];
        star.x = coordinate();
        star.y = coordinate();
        star.z = coordinate();
        stars.world_vertices[i] = star;
        stars.sort_order[i] = static_cast<std::int32_t>(i);
    }
}

// What can't be read has been reported by now, and stays empty.
void load_mesh(const char* file, object& mesh) {
    if (const std::string path = data_path(file); can_be_read(path)) object_load(path, mesh);
}

void load_meshes(show& all) {
    const auto meshes = {&all.obj_inside, &all.obj_meteor, &all.obj_cube};
    for (object* mesh : meshes)
        mesh->read_mapping = 1;
    load_mesh("asc/meteor/inside.asc", all.obj_inside);
    load_mesh("asc/meteor/meteor2.asc", all.obj_meteor);
    load_mesh("asc/cube.asc", all.obj_cube);
    for (object* mesh : meshes)
        object_set_light(*mesh, 0, -1, -1, 0, 0, 0);
}

void create_layers(show& all) {
    all.wire_layer = frame_surface(0);
    all.wire_trail = frame_surface(0);
    all.title_layer = frame_surface(0);
    all.title_trail = frame_surface(0);
    all.title_fade = frame_surface(0);
    all.white_frame = frame_surface(0xffffff);
    all.grey_frame = frame_surface(0xc0c0c0);
}

void load_first_pictures(show& all) {
    all.img_morvane = load_picture("part1/morvane.png");
    all.img_presents = load_picture("part1/presents.png");
    all.img_lorrim = load_picture("part1/lorrim.png");
    all.img_greets = load_picture("part1/greets.png");
    gtex mask = frame_surface(0);
    load_mask(mask, "part1/greets-1-256.tga");
    gtex_copy_mask(all.img_greets, mask);
    gtex_destroy(mask);
    all.img_cred = load_picture("part1/cred.png");
    all.img_hum = load_picture("part1/hum.png");
}

void load_sprites(show& all) {
    all.spr_light = load_sprite("gfx/sprites/light.tga");
    all.spr_light2 = load_sprite("gfx/sprites/light2.tga");
    all.spr_light3 = load_sprite("gfx/sprites/light_3.tga");
    all.spr_glow = gtex_create(32, 32, 0);
    gtex_radial(all.spr_glow, 0x115533);
}

void load_later_pictures(show& all) {
    all.img_parental = load_picture("part1/parental-1.png");
    all.img_cubev = load_picture("part1/cubev.png");
    all.img_violence = load_picture("part1/violence.png");
    all.img_velkadame = load_picture("part1/velkadame2x.png");
    all.img_accident = load_picture("part1/accident1.png");
    load_mask(all.img_accident, "part1/accident1-256.tga");
}

void load_textures(show& all) {
    all.tex_work = gtex_create(256, 256, 0);
    all.tex_texture = load_raw(256, "part1/tex/texture.tga");
    all.tex_intro = load_raw(256, "part1/tex/intro1c.tga");
    all.tex_tunnel = load_raw(256, "part1/tex/tunnel3.tga");
    all.tex_cube = load_raw(256, "part1/tex/cubetex2.tga");
    gtex_copy(all.tex_work, all.tex_texture);
}

} // namespace

show::~show() {
    for (gtex show::*surface : all_surfaces)
        gtex_destroy(this->*surface);
    video_close();
}

void create_spine(show& all) {
    all.screen_memory = gtex_create(frame_columns, frame_rows, 0);
    all.screen = all.screen_memory;
    all.canvas = gtex_create(frame_columns, frame_rows, 0);
}

bool start_up(show& all) {
    report_missing_files();
    tunnel_tables_init();
    frame_width = frame_columns;
    frame_height = frame_rows;
    if (!set_up_scene(all.scene)) return false;
    create_plasma(all);
    all.video_frame = video_open(data_path(clip_file).c_str());
    scatter_stars(all.obj_stars);
    load_meshes(all);
    create_layers(all);
    load_first_pictures(all);
    load_sprites(all);
    load_later_pictures(all);
    load_textures(all);
    warp_tables_init();
    mix_table_init(0.875F, 0.125F);
    return true;
}
