# Libraries from the distribution, each seen by the one file that stands on it.
find_package(PkgConfig REQUIRED)
find_package(PNG REQUIRED)
find_package(JPEG REQUIRED)
pkg_check_modules(SDL2 REQUIRED IMPORTED_TARGET sdl2)

