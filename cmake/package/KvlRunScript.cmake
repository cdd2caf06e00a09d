# One run of the program for kvl_generate(): PROGRAM runs SCRIPT in DIRECTORY and is to write OUTPUTS. KEEP is a directory
# of this run's own, in which the old outputs wait until it is known whether the new ones differ; empty: they don't wait.

# The place in which the old file of an output waits.
macro(kvl_find_kept output)
    string(MD5 place "${output}")
    get_filename_component(name "${output}" NAME)
    get_filename_component(outputDirectory "${output}" DIRECTORY)
    set(kept "${KEEP}/${place}/${name}")
endmacro()

# The run finds a copy in the place of each: copying cuts the time to whole seconds, so the copy cannot be what waits.
macro(kvl_keep_outputs)
    file(REMOVE_RECURSE "${KEEP}")
    foreach(output IN LISTS OUTPUTS)
        kvl_find_kept("${output}")
        if(EXISTS "${output}")
            file(MAKE_DIRECTORY "${KEEP}/${place}")
            file(RENAME "${output}" "${kept}")
            file(COPY "${kept}" DESTINATION "${outputDirectory}")
        endif()
    endforeach()
endmacro()

# An output that came out as it was gets its old file back, and with it its time.
macro(kvl_give_back_unchanged)
    foreach(output IN LISTS OUTPUTS)
        kvl_find_kept("${output}")
        if(EXISTS "${kept}")
            file(SHA256 "${kept}" oldHash)
            file(SHA256 "${output}" newHash)
            if(oldHash STREQUAL newHash)
                file(RENAME "${kept}" "${output}")
            endif()
        endif()
    endforeach()
    file(REMOVE_RECURSE "${KEEP}")
endmacro()

if(KEEP)
    kvl_keep_outputs()
endif()
file(MAKE_DIRECTORY "${DIRECTORY}")
execute_process(
    COMMAND "${PROGRAM}" "${SCRIPT}" -overwrite
    WORKING_DIRECTORY "${DIRECTORY}"
    INPUT_FILE /dev/null
    OUTPUT_VARIABLE console
    ERROR_VARIABLE console
    RESULT_VARIABLE result)

if(NOT result EQUAL 0 OR NOT console MATCHES "\nWarnings: 0 Errors: 0 *\n")
    message("${console}")
endif()
if(NOT result EQUAL 0)
    message(FATAL_ERROR "kvlRun ${SCRIPT} failed: ${result}")
endif()
foreach(output IN LISTS OUTPUTS)
    if(NOT EXISTS "${output}")
        message(FATAL_ERROR "kvlRun ${SCRIPT} ran, but did not write ${output}")
    endif()
endforeach()

if(KEEP)
    kvl_give_back_unchanged()
else()
    # Make would remake an output that this run had no reason to write.
    file(TOUCH ${OUTPUTS})
endif()
