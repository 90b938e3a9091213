# Warnings and sanitizers for every target of the project.
option(RAVELYN_WARNINGS_AS_ERRORS "Stop the build at a warning" OFF)

add_library(ravelyn_warnings INTERFACE)
target_compile_options(ravelyn_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast
  -Woverloaded-virtual -Wnon-virtual-dtor
  $<$<BOOL:${RAVELYN_WARNINGS_AS_ERRORS}>:-Werror>)

if(RAVELYN_SANITIZE)
  target_compile_options(ravelyn_warnings INTERFACE
    -fsanitize=${RAVELYN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(ravelyn_warnings INTERFACE -fsanitize=${RAVELYN_SANITIZE})
endif()
