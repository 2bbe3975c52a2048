# SPDX-License-Identifier: MIT
# Installs the packages if the lock file has changed, and builds the page: cmake -D NODE= NPM= SOURCE= WORK= FOLDER=
# STAMP= REQUIRED= -P. Unless the console is required (ON), the build continues without it.
function(fail reason)
    if(REQUIRED STREQUAL "AUTO")
        message(NOTICE "There will be no console: ${reason}")
        file(REMOVE_RECURSE ${FOLDER})
        file(MAKE_DIRECTORY ${FOLDER})
        file(WRITE ${STAMP} "failed")
    else()
        message(FATAL_ERROR "The console cannot be built: ${reason}")
    endif()
endfunction()

file(MAKE_DIRECTORY ${WORK})
file(SHA256 ${SOURCE}/package-lock.json wanted)
set(installed "")
if(EXISTS ${WORK}/installed)
    file(READ ${WORK}/installed installed)
endif()
if(NOT installed STREQUAL wanted)
    file(COPY ${SOURCE}/package.json ${SOURCE}/package-lock.json ${SOURCE}/.npmrc DESTINATION ${WORK})
    execute_process(COMMAND ${NPM} ci --ignore-scripts --no-progress WORKING_DIRECTORY ${WORK}
        RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE errors)
    if(NOT result EQUAL 0)
        fail("npm cannot install its packages:\n${errors}")
        return()
    endif()
    file(WRITE ${WORK}/installed ${wanted})
endif()

# The packages are found from the folder of the sources.
file(REMOVE_RECURSE ${WORK}/src)
file(COPY ${SOURCE}/src ${SOURCE}/build.mjs ${SOURCE}/tsconfig.json ${SOURCE}/../protocol/types DESTINATION ${WORK})
execute_process(COMMAND ${NODE} build.mjs ${FOLDER} WORKING_DIRECTORY ${WORK} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    # An error of the sources is never passed over.
    message(FATAL_ERROR "The console cannot be built")
endif()
file(WRITE ${STAMP} "built")
