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

# Should a fault of ours be left, hostile input finds the program guarded. `standard` costs nothing that shows; `full` adds
# what costs a tenth, for tests. Not beside the sanitizers, which see more. _FORTIFY_SOURCE needs an optimised build, which
# a plain Debug is not.
if(CMAKE_BUILD_TYPE STREQUAL Debug)
    set(harden off)
else()
    set(harden standard)
endif()
set(KVL_HARDEN ${harden} CACHE STRING "Guards built into the program: off, standard or full")
set_property(CACHE KVL_HARDEN PROPERTY STRINGS off standard full)
if(NOT KVL_HARDEN MATCHES "^(off|standard|full)$")
    message(FATAL_ERROR "KVL_HARDEN is off, standard or full, not '${KVL_HARDEN}'")
endif()
if(NOT KVL_HARDEN STREQUAL off AND NOT KVL_SANITIZE AND NOT KVL_BUILD_FUZZERS)
    set(targetType $<TARGET_PROPERTY:TYPE>)
    target_compile_options(
        kvl_settings INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3  # after the lower level that some compilers come with
                               $<$<NOT:$<STREQUAL:${targetType},MODULE_LIBRARY>>:-fPIE>)
    target_link_options(kvl_settings INTERFACE -Wl,-z,relro,-z,now $<$<STREQUAL:${targetType},EXECUTABLE>:-pie>)
    # Not every processor has these.
    include(CheckCXXCompilerFlag)
    set(guards -fstack-clash-protection)
    if(KVL_HARDEN STREQUAL full)
        target_compile_options(kvl_settings INTERFACE -D_GLIBCXX_ASSERTIONS -fstack-protector-strong)
        list(APPEND guards -fcf-protection)
    endif()
    foreach(guard IN LISTS guards)
        string(MAKE_C_IDENTIFIER "KVL_HAS${guard}" hasGuard)
        check_cxx_compiler_flag(${guard} ${hasGuard})
        if(${hasGuard})
            target_compile_options(kvl_settings INTERFACE ${guard})
        endif()
    endforeach()
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
