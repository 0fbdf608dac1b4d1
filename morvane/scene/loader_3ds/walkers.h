// The descent through the tree of chunks. A walker takes one level, whose first header has been read: each
// chunk goes to its builder or into the walker of its own level, or is skipped.
#pragma once

class sceneloader_3ds;

// The level inside the main chunk, and by it all others.
void walk_main(sceneloader_3ds& in);
