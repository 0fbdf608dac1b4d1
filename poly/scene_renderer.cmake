# The scene renderer stands above the scene, which itself looks up render modes in morvane_poly.
morvane_library(morvane_scene_renderer poly/scene_renderer.cpp)
target_link_libraries(morvane_scene_renderer PUBLIC morvane_poly morvane_scene)
