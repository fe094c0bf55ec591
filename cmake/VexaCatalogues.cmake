# vexa_add_catalogues(OUT name): compiles the .ts catalogues of the calling
# module's translations/ folder with lrelease and builds them into the module
# as resources under :/<name>/i18n (Q_INIT_RESOURCE(<name>_translations));
# OUT receives the files to add to the module's target.
function(vexa_add_catalogues out name)
  file(GLOB ts CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/translations/*.ts)
  set_source_files_properties(${ts} PROPERTIES OUTPUT_LOCATION ${CMAKE_CURRENT_BINARY_DIR}/i18n)
  qt5_add_translation(qm ${ts})
  set(qrc ${CMAKE_CURRENT_BINARY_DIR}/${name}_translations.qrc)
  set(qrc_files "")
  foreach(file ${qm})
    get_filename_component(qm_name ${file} NAME)
    string(APPEND qrc_files "    <file alias=\"${qm_name}\">${file}</file>\n")
  endforeach()
  file(WRITE ${qrc}.in "<RCC>\n  <qresource prefix=\"/${name}/i18n\">\n${qrc_files}  </qresource>\n</RCC>\n")
  configure_file(${qrc}.in ${qrc} COPYONLY)
  qt5_add_resources(resources ${qrc})
  set(${out} ${resources} ${qm} PARENT_SCOPE)
endfunction()
