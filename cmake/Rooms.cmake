# ravelyn_room(NAME BELOW...)  A room is a folder of src/ and a static library that links only with the rooms
# below it. Headers are included as "room/Header.h".
function(ravelyn_room name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
  add_library(ravelyn_${name} STATIC ${sources})
  target_include_directories(ravelyn_${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  list(TRANSFORM ARGN PREPEND ravelyn_ OUTPUT_VARIABLE below)
  target_link_libraries(ravelyn_${name} PUBLIC ${below} ravelyn_warnings)
endfunction()
