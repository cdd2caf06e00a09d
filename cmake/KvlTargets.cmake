# The settings that every target of the project shares, and the two ways to make one.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_library(kvl_settings INTERFACE)
target_include_directories(kvl_settings INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_options(
    kvl_settings
    INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
              $<$<BOOL:${KVL_WARNINGS_AS_ERRORS}>:-Werror>)
# Behind its optimiser g++ 12 reports overlaps and bounds in the library's own string concatenation, where there are none.
target_compile_options(
    kvl_settings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict;-Wno-array-bounds;-Wno-stringop-overflow>)
if(KVL_SANITIZE)
    target_compile_options(kvl_settings INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                                  -fno-omit-frame-pointer)
    target_link_options(kvl_settings INTERFACE -fsanitize=address,undefined)
endif()
if(KVL_BUILD_FUZZERS)
    target_compile_options(kvl_settings INTERFACE -fsanitize=fuzzer-no-link)
endif()

# kvl_add_folder(<name> SOURCES ... LOWER ...): the library of one folder; it links only to folders below it.
function(kvl_add_folder name)
    cmake_parse_arguments(FOLDER "" "" "SOURCES;LOWER" ${ARGN})
    add_library(kvl_${name} STATIC ${FOLDER_SOURCES})
    target_link_libraries(kvl_${name} PUBLIC kvl_settings)
    foreach(lower IN LISTS FOLDER_LOWER)
        target_link_libraries(kvl_${name} PUBLIC kvl_${lower})
    endforeach()
endfunction()
