// The steps that run once over a loaded scene.
#include <cstdio>

#include "morvane/scene/moscene.h"

void moscene::prepare_materials() {
    for (material* m = first_material; m != nullptr; m = m->next)
        material_load_maps(*m, folder);
}

void moscene::calc_normals() {
    for (mesh* m = first_mesh; m != nullptr; m = m->next) {
        std::printf("Calculating normals for %s [%i faces %i vertices]...\n", m->name, m->face_count,
                    m->vertex_count);
        mesh_calc_normals(*m);
    }
}

void moscene::calc_bounds() {
    for (mesh* m = first_mesh; m != nullptr; m = m->next)
        mesh_calc_bounds(*m);
}

void moscene::prepare_keys(mokey_node* start) {
    for (mokey_node* top = start != nullptr ? start : first_node; top != nullptr; top = top->next)
        for (mokey_node* node = top; node != nullptr; node = next_below(node, top))
            node->calc_tangents();
}
