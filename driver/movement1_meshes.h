// How the meshes of the first movement turn: steps 3, 4 and 6 of its score. Each function moves, sorts and
// projects one mesh for the time `t` (seconds), ready to be drawn.
#pragma once

struct object;

void move_inside(object& inside, double t);
void move_meteor(object& meteor, double t);
void move_cube(object& cube, double t);
