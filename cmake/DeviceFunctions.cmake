# Reads the prototypes in device_access.h into generated/device_functions.h, so that whatever has to
# exist once for every device function is not written once for every device function:
#
#   DEVICE_FUNCTIONS(FUNCTION)  expands FUNCTION(result, name, (parameters), (arguments)) for each.
#
# and the records' fields into generated/device_fields.h:
#
#   DEVICE_FIELDS(FIELD)        expands FIELD(record, field) for each that is no pointer.
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

set(generated_dir ${PROJECT_BINARY_DIR}/generated)
file(CONFIGURE OUTPUT ${generated_dir}/device_functions.h CONTENT
"// Made from device_access.h.
#pragma once

#define DEVICE_FUNCTIONS(FUNCTION)@rows@
" @ONLY)

string(REGEX MATCHALL "\nDEVAPI_RECORD_FIELD\\([A-Za-z0-9_]+,[ \n]*[A-Za-z0-9_]+" fields "${device_text}")
list(TRANSFORM fields REPLACE "\nDEVAPI_RECORD_FIELD\\(([A-Za-z0-9_]+),[ \n]*" " \\\\\n    FIELD(\\1, ")
list(TRANSFORM fields APPEND ")")
list(JOIN fields "" rows)
file(CONFIGURE OUTPUT ${generated_dir}/device_fields.h CONTENT
"// Made from device_access.h.
#pragma once

#define DEVICE_FIELDS(FIELD)@rows@
" @ONLY)

add_library(device_functions INTERFACE)
target_include_directories(device_functions INTERFACE ${generated_dir})
target_link_libraries(device_functions INTERFACE plugin_headers)
