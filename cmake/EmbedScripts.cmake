# orvel_embed_scripts(<target> <namespace> <header> <folder>): checks the scripts of the folder and
# makes each a constant in the header.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
function(orvel_embed_scripts target namespace header folder)
  file(GLOB scripts CONFIGURE_DEPENDS ${folder}/*.js)
  set(generated ${CMAKE_CURRENT_BINARY_DIR}/generated)
  set(embed ${CMAKE_SOURCE_DIR}/cmake/embed-scripts.py)
  file(MAKE_DIRECTORY ${generated})
  add_custom_command(OUTPUT ${generated}/${header}
    COMMAND Python3::Interpreter ${embed} ${generated}/${header} ${namespace} ${scripts}
    DEPENDS ${scripts} ${embed} VERBATIM)
  target_sources(${target} PRIVATE ${generated}/${header})
  target_include_directories(${target} PRIVATE ${generated})
endfunction()
