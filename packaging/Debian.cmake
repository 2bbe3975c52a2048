# SPDX-License-Identifier: MIT
# The packages: the plug-in, for users with their own agent; the files to build an agent; the reference agent with
# the simulated gateway; and the device library for Linux machines that route.
set(package_of_runtime smart-router-service)
set(package_of_development smart-router-service-dev)
set(package_of_agent hgagent)
set(package_of_linux_gateway linux-gateway)

set(SMART_ROUTER_PACKAGE_MAINTAINER "The smart_router_service authors <smart-router-service@example.org>"
    CACHE STRING "Maintainer of the Debian packages")
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME smart-router-service)
set(CPACK_PACKAGE_CONTACT "${SMART_ROUTER_PACKAGE_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # otherwise it precedes each package's summary
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL runtime development agent)
if(TARGET linux_gateway)
    list(APPEND CPACK_COMPONENTS_ALL linux_gateway)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(same_version "(= ${PROJECT_VERSION})")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
"command-processing plug-in for home gateways
A management agent loads this library, passes it the JSON commands of a
platform or an app, and finds the reply in the same object. The library turns
each command into calls of the router's device-access library.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "smart-router-service ${same_version}, libcjson-dev")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
"headers of the command-processing plug-in for home gateways
For developers of an agent that loads the plug-in, or of a device-access
library for it: the headers, a CMake package, a pkg-config file, JSON Schemas
of all commands, types for TypeScript and Python, and examples: a minimal
agent and device library, and clients of a gateway.")

set(CPACK_DEBIAN_AGENT_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_AGENT_PACKAGE_DEPENDS "smart-router-service ${same_version}")
set(CPACK_DEBIAN_AGENT_DESCRIPTION
"reference agent and simulated gateway for home-gateway commands
The program hgagent loads the plug-in as the agent of a gateway does. Its
device is a simulated gateway, a model of a home that answers queries and
remembers what is set, or a device-access library, which it can also test.")

foreach(script postinst prerm postrm)
    list(APPEND CPACK_DEBIAN_AGENT_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/debian/hgagent/${script})
endforeach()
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_LINUX_GATEWAY_PACKAGE_SECTION net)
set(CPACK_DEBIAN_LINUX_GATEWAY_PACKAGE_DEPENDS "hgagent ${same_version}, tzdata, nftables, iproute2")
set(CPACK_DEBIAN_LINUX_GATEWAY_PACKAGE_RECOMMENDS "dnsmasq-base")
set(CPACK_DEBIAN_LINUX_GATEWAY_PACKAGE_CONTROL_EXTRA
    ${CMAKE_CURRENT_SOURCE_DIR}/debian/linux-gateway/prerm
    ${CMAKE_CURRENT_SOURCE_DIR}/debian/linux-gateway/postrm)
set(CPACK_DEBIAN_LINUX_GATEWAY_DESCRIPTION
"device library for home-gateway commands on a Linux router
On a machine that routes between a bridge and an uplink, with dnsmasq, this
library answers the commands of hgagent from the real system: hosts, counters
and addresses. It blocks and limits hosts in an nftables table and a queueing
root of its own, and leaves everything else alone.")

# Files that only Debian packages contain.
find_program(GZIP gzip REQUIRED)
configure_file(debian/changelog.in changelog @ONLY)
execute_process(COMMAND ${GZIP} --best --no-name --force --keep changelog
    WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR} COMMAND_ERROR_IS_FATAL ANY)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} COMPONENT)
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME ${package_of_${component}})
    install(FILES debian/copyright ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package_of_${component}}
        COMPONENT ${component} EXCLUDE_FROM_ALL)
endforeach()
if(TARGET linux_gateway)
    install(FILES debian/linux-gateway/overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
        RENAME linux-gateway COMPONENT linux_gateway EXCLUDE_FROM_ALL)
endif()
include(CPack)
