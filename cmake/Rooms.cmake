# A room is one folder below src/ and one object library. Every room sees the headers of all
# others as "room/Header.h"; which of them it may include is checked by a test.
function(ravelyn_room name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
  add_library(ravelyn_${name} OBJECT ${sources})
  target_include_directories(ravelyn_${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(ravelyn_${name} PRIVATE ravelyn_warnings)
endfunction()
