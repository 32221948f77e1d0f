# The data folder of the build tree, laid out as it is installed: build/<preset>/share/inkloom. A settings file beside
# the program tells where it is, so a program started from the build tree finds its blank page without an installation.
set(INKLOOM_DATA_DIR ${CMAKE_BINARY_DIR}/share/inkloom)
set(data_sources
  _blank.htm
  splash.svg
  Templates/_blank.htm
  Templates/article.htm
  Templates/contact-form.htm
  Templates/invitation.htm
  Templates/letter.htm
  Templates/photo-page.htm
  Templates/price-list.htm
  Templates/questions.htm
  Templates/start-page.htm
  Templates/two-columns.htm
  icons/inkloom.svg)
list(TRANSFORM data_sources PREPEND resources/)
list(APPEND data_sources
  help/alphabetical.htm
  help/background.htm
  help/bookmarks.htm
  help/broken-links.htm
  help/browsers.htm
  help/cell-properties.htm
  help/expanding-sections.htm
  help/file-pane.htm
  help/find.htm
  help/first-steps.htm
  help/form-field.htm
  help/format.htm
  help/forms.htm
  help/global-find.htm
  help/help.css
  help/html-code.htm
  help/image-maps.htm
  help/index.htm
  help/keyboard.htm
  help/knowledgebase.htm
  help/links.htm
  help/new-page.htm
  help/normal-view.htm
  help/open-save.htm
  help/page-properties.htm
  help/pictures.htm
  help/pop-ups.htm
  help/position.htm
  help/preview.htm
  help/publish.htm
  help/recovery.htm
  help/server-code.htm
  help/settings.htm
  help/source-view.htm
  help/spelling.htm
  help/style-sheets.htm
  help/table-properties.htm
  help/tables.htm
  help/templates.htm
  help/updates.htm
  help/window.htm)
set(data_files)
foreach(source IN LISTS data_sources)
  string(REGEX REPLACE "^resources/" "" name ${source})
  add_custom_command(
    OUTPUT ${INKLOOM_DATA_DIR}/${name}
    COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_SOURCE_DIR}/${source} ${INKLOOM_DATA_DIR}/${name}
    DEPENDS ${CMAKE_SOURCE_DIR}/${source}
    VERBATIM)
  list(APPEND data_files ${INKLOOM_DATA_DIR}/${name})
endforeach()
add_custom_target(data_folder ALL DEPENDS ${data_files})

file(WRITE ${CMAKE_BINARY_DIR}/bin/inkloom.ini "[Locations]\nmain dir=${INKLOOM_DATA_DIR}/\n")
