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
set(data_files)
foreach(name IN LISTS data_sources)
  add_custom_command(
    OUTPUT ${INKLOOM_DATA_DIR}/${name}
    COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_SOURCE_DIR}/resources/${name} ${INKLOOM_DATA_DIR}/${name}
    DEPENDS ${CMAKE_SOURCE_DIR}/resources/${name}
    VERBATIM)
  list(APPEND data_files ${INKLOOM_DATA_DIR}/${name})
endforeach()
add_custom_target(data_folder ALL DEPENDS ${data_files})

file(WRITE ${CMAKE_BINARY_DIR}/bin/inkloom.ini "[Locations]\nmain dir=${INKLOOM_DATA_DIR}/\n")
