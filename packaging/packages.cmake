# What is installed, and the Debian packages that it makes (`cpack -G DEB`). A component is a package.
include(GNUInstallDirs)
set(data ${CMAKE_INSTALL_DATADIR})
set(from ${CMAKE_SOURCE_DIR}/packaging)

# Component, destination, files.
function(quorin_install component destination)
  install(FILES ${ARGN} DESTINATION ${destination} COMPONENT ${component})
endfunction()

quorin_install(common ${data}/quorin ${resources})
quorin_install(service ${data}/dbus-1/system.d ${from}/org.brennic.BasebandManager1.conf)
quorin_install(service ${data}/dbus-1/system.d ${from}/org.quorin.basebandd.ModemManager.conf)
install(FILES ${from}/org.quorin.basebandd.rules DESTINATION ${data}/polkit-1/rules.d
  RENAME 60-basebandd.rules COMPONENT service)
quorin_install(service ${data}/dbus-1/system-services ${from}/org.brennic.BasebandManager1.service)
install(FILES ${from}/basebandd.sysusers DESTINATION lib/sysusers.d RENAME basebandd.conf
  COMPONENT service)
# The unit names its program, whose prefix is known only when it is installed.
install(CODE "
  set(program \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/basebandd\")
  set(unit \"\${CMAKE_INSTALL_PREFIX}/lib/systemd/system/basebandd.service\")
  message(STATUS \"Installing: \$ENV{DESTDIR}\${unit}\")
  configure_file(\"${from}/basebandd.service.in\" \"\$ENV{DESTDIR}\${unit}\" @ONLY)"
  COMPONENT service)
if(TARGET quorin)
  quorin_install(window ${data}/applications ${from}/org.quorin.viewer.desktop)
  quorin_install(window ${data}/metainfo ${from}/org.quorin.viewer.metainfo.xml)
  quorin_install(window ${data}/icons/hicolor/scalable/apps ${from}/icons/org.quorin.viewer.svg)
  quorin_install(window ${data}/icons/hicolor/symbolic/apps
    ${from}/icons/org.quorin.viewer-symbolic.svg)
endif()

# Whose headers are compiled in wants its notice beside the programs.
file(READ ${from}/copyright copyright)
foreach(package nlohmann-json3-dev libcli11-dev libtomlplusplus-dev)
  if(EXISTS /usr/share/doc/${package}/copyright)
    file(READ /usr/share/doc/${package}/copyright notice)
    string(APPEND copyright "\n\nCompiled in, from Debian's ${package}:\n\n${notice}")
  endif()
endforeach()
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/copyright "${copyright}")

# A component's package, its programs, what it needs beside its libraries, and its description.
macro(quorin_package component name)
  cmake_parse_arguments(package "" "ARCHITECTURE;SUGGESTS;DESCRIPTION"
    "PROGRAMS;COMPONENTS;DEPENDS" ${ARGN})
  if(package_PROGRAMS)
    install(TARGETS ${package_PROGRAMS} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
      COMPONENT ${component})
  endif()
  quorin_install(${component} ${data}/doc/${name} ${CMAKE_CURRENT_BINARY_DIR}/copyright)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  string(TOUPPER ${component} key)
  list(JOIN package_DEPENDS ", " package_DEPENDS)
  set(CPACK_COMPONENT_${key}_DEPENDS ${package_COMPONENTS})
  set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${key}_PACKAGE_ARCHITECTURE ${package_ARCHITECTURE})
  set(CPACK_DEBIAN_${key}_PACKAGE_DEPENDS ${package_DEPENDS})
  set(CPACK_DEBIAN_${key}_PACKAGE_SUGGESTS ${package_SUGGESTS})
  set(CPACK_DEBIAN_${key}_DESCRIPTION ${package_DESCRIPTION})
endmacro()

quorin_package(common quorin-common ARCHITECTURE all DESCRIPTION
"files that quorin's viewers share
The metric configuration that a viewer asks the baseband-manager service for,
and a sample recording of a drive.")

quorin_package(terminal quorin-terminal PROGRAMS quorin-terminal COMPONENTS common
  SUGGESTS quorin-service DESCRIPTION
"diagnostics of a cellular modem, in a terminal
Shows the pages of each radio technology and category, as the modem reports
them now, as text. Plays recordings, too.")

if(TARGET quorin)
  # What the window loads at run time and dpkg-shlibdeps cannot see.
  file(STRINGS ${CMAKE_SOURCE_DIR}/dependencies.txt rows REGEX "^[^# ]+ +window ")
  list(TRANSFORM rows REPLACE " .*" "")
  list(FILTER rows EXCLUDE REGEX "-dev$")
  quorin_package(window quorin PROGRAMS quorin COMPONENTS common DEPENDS ${rows}
    SUGGESTS quorin-service DESCRIPTION
"diagnostics of a cellular modem, in a window
Walks from radio technology to category to fields and shows what the modem is
doing now: in three columns on a desktop, one page at a time on a phone. Plays
recordings, too.")
endif()

quorin_package(service quorin-service PROGRAMS basebandd DEPENDS
  "default-dbus-system-bus | dbus-system-bus"
  "systemd | systemd-standalone-sysusers | systemd-sysusers" SUGGESTS modemmanager DESCRIPTION
"baseband-manager service
Gives the metrics of a cellular modem to any number of clients over the system
bus, which starts it when one asks. Its sources are the modem that ModemManager
has, a simulated drive, with which it starts, and recordings. Only members of
the group baseband may ask.")

quorin_package(tools quorin-tools PROGRAMS metricctl DESCRIPTION
"metrics of a cellular modem on the command line
Decodes and encodes payloads, imports drive logs, watches, records and replays
the events of the baseband-manager service.")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_PACKAGE_VENDOR "quorin developers")
set(CPACK_PACKAGE_CONTACT "quorin developers <quorin@localhost>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_SERVICE_PACKAGE_CONTROL_EXTRA
  ${from}/debian/postinst ${from}/debian/prerm ${from}/debian/postrm)
set(CPACK_DEBIAN_SERVICE_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
