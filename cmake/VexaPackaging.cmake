# Debian packages with CPack (cpack -G DEB in the build folder; scripts/package
# builds both architectures): vexa-host with the SDK libraries and a systemd
# unit, and vexa-module-<name> for each module. Dependencies on Debian's
# libraries come from dpkg-shlibdeps. The SDK libraries are private to the
# host and its modules: they live in /usr/lib/vexa, found through RUNPATH,
# so the installed files also run where dpkg -x put them.
set(VEXA_INSTALL_LIB_DIR lib/vexa)
set(VEXA_INSTALL_MODULES_DIR ${VEXA_INSTALL_LIB_DIR}/modules)
set(VEXA_USER vexa)
set(VEXA_STATE_DIR /var/lib/vexa)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)

set_target_properties(vexa-host PROPERTIES INSTALL_RPATH "$ORIGIN/../${VEXA_INSTALL_LIB_DIR}")
set_target_properties(vexa_api_play PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS vexa-host RUNTIME DESTINATION bin COMPONENT host)
install(TARGETS vexa_api vexa_api_play LIBRARY DESTINATION ${VEXA_INSTALL_LIB_DIR} COMPONENT host)

# The service: vexa-host as its own user, on loopback unless
# /etc/default/vexa-host says otherwise; restarted when a module comes or goes.
configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/vexa-host.service.in ${CMAKE_BINARY_DIR}/debian/vexa-host.service @ONLY)
foreach(script postinst prerm postrm triggers)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/${script}.in ${CMAKE_BINARY_DIR}/debian/${script} @ONLY)
endforeach()
install(FILES ${CMAKE_BINARY_DIR}/debian/vexa-host.service DESTINATION lib/systemd/system COMPONENT host)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/debian/vexa-host.default DESTINATION /etc/default RENAME vexa-host COMPONENT host)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "Vexa developers <vexa@localhost>")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL host)

set(CPACK_DEBIAN_HOST_PACKAGE_NAME vexa-host)
# Descriptions: the summary, then the text (CPack indents it as Debian wants).
set(CPACK_COMPONENT_HOST_DESCRIPTION "Vexa host: loads the modules, plays, serves the HTTP API and the web app
vexa-host runs as a service under its own user, with its data in
${VEXA_STATE_DIR}, listening on 127.0.0.1:8080 unless /etc/default/vexa-host
says otherwise. It brings the SDK libraries its modules are written against.")
# playbin plays; adduser makes the service's user.
set(CPACK_DEBIAN_HOST_PACKAGE_DEPENDS "adduser, gstreamer1.0-plugins-base")
set(CPACK_DEBIAN_HOST_PACKAGE_RECOMMENDS "gstreamer1.0-plugins-good, gstreamer1.0-alsa, glib-networking, vexa-module-playlists")
set(CPACK_DEBIAN_HOST_PACKAGE_CONTROL_EXTRA
  ${CMAKE_CURRENT_LIST_DIR}/debian/conffiles ${CMAKE_BINARY_DIR}/debian/postinst
  ${CMAKE_BINARY_DIR}/debian/prerm ${CMAKE_BINARY_DIR}/debian/postrm ${CMAKE_BINARY_DIR}/debian/triggers)
set(CPACK_DEBIAN_HOST_PACKAGE_CONTROL_STRICT_PERMISSION ON)

get_property(vexa_modules GLOBAL PROPERTY VEXA_MODULES)
foreach(module ${vexa_modules})
  string(REGEX REPLACE "^vexa_" "" name ${module})
  string(TOUPPER ${name} component)
  get_target_property(summary ${module} VEXA_SUMMARY)
  set_target_properties(${module} PROPERTIES INSTALL_RPATH "$ORIGIN/..")
  install(TARGETS ${module} LIBRARY DESTINATION ${VEXA_INSTALL_MODULES_DIR} COMPONENT ${name})
  list(APPEND CPACK_COMPONENTS_ALL ${name})
  set(CPACK_DEBIAN_${component}_PACKAGE_NAME vexa-module-${name})
  set(CPACK_COMPONENT_${component}_DEPENDS host)
  set(CPACK_COMPONENT_${component}_DESCRIPTION "Vexa module: ${summary}
The vexa-host service restarts to load it.")
endforeach()

include(CPack)
