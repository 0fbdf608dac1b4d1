// The makers of pictures, masks, textures and sprites. Each returns the bytes of one file.
#pragma once

#include "assets/forms/file_forms.h"

namespace assets {

// The advisory card that opens the show: seven seconds under a moving plasma that multiplies it.
file_bytes parental_card();

// Three titles on black. They are added, after a wobble, over a turning meteor with magenta wires.
file_bytes title_morvane();
file_bytes title_presents();
file_bytes title_lorrim();

// The production's own title, on black: added over the inside of the textured mesh.
file_bytes title_velkadame();

// Added pictures on black: round the turning cube; over the clip, inside the panel's window; across the card.
file_bytes overlay_cubev();
file_bytes overlay_cred();
file_bytes overlay_violence();

// The panel that frames the clip: pure black is its window, everything else at least (1, 1, 1).
file_bytes hum_panel();

// The broken pane over the 3D scene and how much of it shows (255: only the pane).
file_bytes accident_picture();
file_bytes accident_mask();

// The greetings and how much of them shows over the beat.
file_bytes greets_picture();
file_bytes greets_mask();

// Textures, 256x256, that repeat in both directions.
file_bytes texture_inside();
file_bytes texture_intro();
file_bytes texture_tunnel();
file_bytes texture_cube();

// Lights, 32x32, black at the rim.
file_bytes sprite_light();
file_bytes sprite_light2();
file_bytes sprite_light3();

} // namespace assets
