// The tracks of the show as files.
#pragma once

#include "assets/forms/file_forms.h"

namespace assets {

file_bytes music_ashwing(); // MP3
file_bytes music_ferrow();  // OGG

} // namespace assets
