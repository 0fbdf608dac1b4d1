// The front of the scene readers: picks one by the file's extension.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "morvane/scene/sceneloader.h"

// A loader for files with this extension, which is compared letter by letter: "3ds". Null for any other.
std::unique_ptr<sceneloader> sceneload_find(std::string_view extension);

// Reads the scene at `path` with the loader for what follows its last '.', and notes the folder of `path` in
// `scene`, where the pictures of its materials are looked for. False if the path has no '.' or the loader
// fails. An extension that no loader knows gives true, and the scene stays empty.
bool sceneload_file(moscene& scene, const std::string& path);
