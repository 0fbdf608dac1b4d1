# What every target of the project is compiled with.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

# Editors and clang-tidy look for it in the root.
file(CREATE_LINK "${CMAKE_BINARY_DIR}/compile_commands.json" "${CMAKE_SOURCE_DIR}/compile_commands.json"
     RESULT ignored SYMBOLIC)

option(MORVANE_SANITIZE "AddressSanitizer and UBSan, no recovery" OFF)
option(MORVANE_COVERAGE "Instrument for gcovr" OFF)

option(MORVANE_WERROR "A warning ends the build" ON)
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion)
if(MORVANE_WERROR)
  add_compile_options(-Werror)
endif()
# The same float results for every optimisation level and instruction set.
add_compile_options(-ffp-contract=off)
# Where this vectoriser of GCC 12 packs conversions from double to float and back, it drops the rounding.
add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fno-tree-slp-vectorize>)

if(MORVANE_SANITIZE)
  add_compile_options(-fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  # One plain version of each kernel: a sanitizer sees all of its accesses.
  add_compile_definitions(MORVANE_PLAIN_KERNELS)
endif()
if(MORVANE_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
  add_compile_definitions(MORVANE_PLAIN_KERNELS)
endif()
if(MORVANE_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
  add_compile_definitions(MORVANE_PLAIN_KERNELS)
endif()

# morvane_library(NAME SOURCES file... [USES room...] [OUTSIDE library...]): the static library morvane_NAME of one
# folder, known to others as morvane::NAME. USES names the rooms that it stands on, OUTSIDE libraries that none but
# its own files see.
function(morvane_library name)
  cmake_parse_arguments(arg "" "" "SOURCES;USES;OUTSIDE" ${ARGN})
  add_library(morvane_${name} STATIC ${arg_SOURCES})
  add_library(morvane::${name} ALIAS morvane_${name})
  target_include_directories(morvane_${name} PUBLIC "${PROJECT_SOURCE_DIR}")
  list(TRANSFORM arg_USES PREPEND "morvane::")
  target_link_libraries(morvane_${name} PUBLIC ${arg_USES} PRIVATE ${arg_OUTSIDE})
endfunction()
