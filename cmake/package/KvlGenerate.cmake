#[[
Generated files as part of a build:

    kvl_generate(<target> SCRIPT main.kvl OUTPUTS file ... [DEPENDS file ...] [WORKING_DIRECTORY directory])

runs the main script whenever the script, one of DEPENDS or the program itself is newer than an output, with "-overwrite"
and with nothing to read on standard input, so that no run ever waits. If <target> exists (made in the same directory),
the outputs become sources of it; if not, <target> is made and is built by default.

SCRIPT             the main script; a relative path begins in the source directory
OUTPUTS            what the script writes and the build needs; a relative path begins in the binary directory
DEPENDS            all other files that the run reads: types, patterns, scripts, data; files or targets, as add_custom_command
                   understands them. A run does not tell which files it has read, so that a file missing here is a change
                   overlooked there.
WORKING_DIRECTORY  where the program runs, the binary directory by default. A directory variable whose path was never set
                   stands for it: "$BUILD ::KVL:DIRECTORY$", then "$BUILD:FILE("people.h") = ...$" writes into it, while
                   "$HERE:SET_PATH("")$" is the directory of the main script as ever.

A run that succeeds without a message is silent; of any other the console text is shown. A run that fails, or leaves one of
its OUTPUTS unwritten, fails the build. With Ninja an output that came out as it was keeps its time, so that nothing that
is made of it is made again.
#]]
include_guard(GLOBAL)

set(_KVL_RUN_SCRIPT "${CMAKE_CURRENT_LIST_DIR}/KvlRunScript.cmake")

function(kvl_generate target)
    cmake_parse_arguments(PARSE_ARGV 1 KVL "" "SCRIPT;WORKING_DIRECTORY" "DEPENDS;OUTPUTS")
    if(KVL_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "kvl_generate(${target}): unknown arguments: ${KVL_UNPARSED_ARGUMENTS}")
    endif()
    if(NOT KVL_SCRIPT OR NOT KVL_OUTPUTS)
        message(FATAL_ERROR "kvl_generate(${target}): SCRIPT and OUTPUTS are needed")
    endif()

    get_filename_component(script "${KVL_SCRIPT}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_SOURCE_DIR}")
    get_filename_component(directory "${KVL_WORKING_DIRECTORY}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_BINARY_DIR}")
    set(outputs "")
    foreach(output IN LISTS KVL_OUTPUTS)
        get_filename_component(output "${output}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_BINARY_DIR}")
        list(APPEND outputs "${output}")
    endforeach()

    # Make remakes whatever is older than what it is made of, so only Ninja can leave a time as it was.
    set(keep "")
    if(CMAKE_GENERATOR MATCHES "Ninja")
        string(MD5 name "${outputs}")
        set(keep "${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/kvl_generate/${name}")
    endif()
    file(RELATIVE_PATH shown "${CMAKE_SOURCE_DIR}" "${script}")
    add_custom_command(
        OUTPUT ${outputs}
        COMMAND "${CMAKE_COMMAND}" "-DPROGRAM=$<TARGET_FILE:kvl::kvlRun>" "-DSCRIPT=${script}" "-DOUTPUTS=${outputs}"
                "-DDIRECTORY=${directory}" "-DKEEP=${keep}" -P "${_KVL_RUN_SCRIPT}"
        DEPENDS "${script}" ${KVL_DEPENDS} "$<TARGET_FILE:kvl::kvlRun>"
        COMMENT "Running ${shown}"
        VERBATIM)
    if(TARGET ${target})
        target_sources(${target} PRIVATE ${outputs})
    else()
        add_custom_target(${target} ALL DEPENDS ${outputs})
    endif()
endfunction()
