// Scenes out of an archive.
#pragma once

#include <string>

#include "morvane/mopak/mopak.h"
#include "morvane/scene/moscene.h"

// `sceneload_file` for a scene in an open archive; like all of its files, one that the archive doesn't hold
// is looked for on disk. False if the name has no '.', there is no such file or the loader fails. An
// extension that no loader knows gives true, and the scene stays empty.
bool sceneload_archive(mopak& archive, moscene& scene, const std::string& name);
