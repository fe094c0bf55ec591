# vexa_add_module(name core summary): the loadable module lib<name>.so, built
# from its static core library into the folder the host scans, exporting
# nothing but worker_create (from the calling folder's worker_create.cpp).
# Each module is a Debian package of its own (VexaPackaging.cmake), which the
# summary describes.
function(vexa_add_module name core summary)
  set_target_properties(${core} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  add_library(${name} MODULE ${CMAKE_CURRENT_SOURCE_DIR}/worker_create.cpp)
  target_link_libraries(${name} PRIVATE ${core})
  set_target_properties(${name} PROPERTIES
    PREFIX "lib" OUTPUT_NAME "${name}"
    LIBRARY_OUTPUT_DIRECTORY ${VEXA_MODULES_DIR}
    CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
    LINK_FLAGS "-Wl,--exclude-libs,ALL")
  set_property(TARGET ${name} PROPERTY VEXA_SUMMARY "${summary}")
  set_property(GLOBAL APPEND PROPERTY VEXA_MODULES ${name})
endfunction()
