# The application as one folder that runs from wherever it stands, Orvel.app:
#   cmake --install build/release --component bundle --prefix FOLDER

set(contents Orvel.app/Contents)
set(resources ${contents}/Resources)
configure_file(${CMAKE_SOURCE_DIR}/Resources/Info.plist.in ${CMAKE_BINARY_DIR}/Info.plist @ONLY)

install(FILES ${CMAKE_BINARY_DIR}/Info.plist DESTINATION ${contents}
  COMPONENT bundle EXCLUDE_FROM_ALL)
install(TARGETS orvel orvel-rule-compiler RUNTIME DESTINATION ${contents}/Linux
  COMPONENT bundle EXCLUDE_FROM_ALL)
install(TARGETS orvel-web-process LIBRARY DESTINATION ${resources}/web-process
  COMPONENT bundle EXCLUDE_FROM_ALL)
install(DIRECTORY ${CMAKE_BINARY_DIR}/share/orvel/ DESTINATION ${resources}/share
  COMPONENT bundle EXCLUDE_FROM_ALL PATTERN "*.stamp" EXCLUDE)
install(FILES ${CMAKE_SOURCE_DIR}/Resources/icons/com.brinemark.orvel.svg
  DESTINATION ${resources}/share/icons/hicolor/scalable/apps COMPONENT bundle EXCLUDE_FROM_ALL)
