# Reads the prototypes in device_access.h into smart_router_service/device_functions.h in the folder
# generated, so that whatever has to exist once for every device function is not written once for every
# device function:
#
#   DEVICE_FUNCTIONS(FUNCTION)  expands FUNCTION(result, name, (parameters), (arguments)) for each.
#
# The same for the records and their fields, as far as their layout is pinned there: pointers are not.
#
#   DEVICE_RECORDS(RECORD, FIELD)  expands RECORD(name, FIELD(field) FIELD(field) ...) for each.
set(device_header ${PROJECT_SOURCE_DIR}/smart_router_service/include/smart_router_service/device_access.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${device_header})

file(READ ${device_header} device_text)
string(REGEX MATCHALL "\n(int32_t|void) devapi_[A-Za-z0-9_]+\\([^;]*\\)" prototypes "${device_text}")

set(rows "")
foreach(prototype IN LISTS prototypes)
    string(REGEX REPLACE "[ \n]+" " " prototype "${prototype}")
    string(REGEX MATCH "^ ([a-z0-9_]+) (devapi_[A-Za-z0-9_]+)\\((.*)\\)" matched "${prototype}")
    set(result ${CMAKE_MATCH_1})
    set(name ${CMAKE_MATCH_2})
    set(parameters "${CMAKE_MATCH_3}")
    if(parameters STREQUAL "void")
        set(arguments "")
    else()
        string(REGEX REPLACE "[^,]*[ *]([A-Za-z0-9_]+)(,|$)" "\\1\\2 " arguments "${parameters}")
        string(STRIP "${arguments}" arguments)
    endif()
    string(APPEND rows " \\\n    FUNCTION(${result}, ${name}, (${parameters}), (${arguments}))")
endforeach()

string(REGEX MATCHALL "\nDEVAPI_RECORD_FIELD\\([A-Za-z0-9_]+,[ \n]*[A-Za-z0-9_]+," fields "${device_text}")
set(records "")
set(record "")
foreach(row IN LISTS fields)
    string(REGEX MATCH "\\(([A-Za-z0-9_]+),[ \n]*([A-Za-z0-9_]+)," matched "${row}")
    if(NOT record STREQUAL CMAKE_MATCH_1)
        if(record)
            string(APPEND records ")")
        endif()
        set(record ${CMAKE_MATCH_1})
        string(APPEND records " \\\n    RECORD(${record},")
    endif()
    string(APPEND records " FIELD(${CMAKE_MATCH_2})")
endforeach()
string(APPEND records ")")

set(generated_dir ${PROJECT_BINARY_DIR}/generated)
file(CONFIGURE OUTPUT ${generated_dir}/smart_router_service/device_functions.h CONTENT
"// Made from device_access.h.
#pragma once

#define DEVICE_FUNCTIONS(FUNCTION)@rows@

#define DEVICE_RECORDS(RECORD, FIELD)@records@
" @ONLY)

add_library(device_functions INTERFACE)
target_include_directories(device_functions INTERFACE ${generated_dir})
target_link_libraries(device_functions INTERFACE plugin_headers)
install(DIRECTORY ${generated_dir}/smart_router_service
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
