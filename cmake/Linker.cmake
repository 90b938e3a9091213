# Debug builds link dozens of tests, which lld does in a third of the time. Releases keep the compiler's own linker.
find_program(RAVELYN_LLD ld.lld)
if(RAVELYN_LLD AND CMAKE_BUILD_TYPE STREQUAL "Debug")
  add_link_options(-fuse-ld=lld)
endif()
