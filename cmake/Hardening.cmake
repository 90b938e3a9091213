# Hardening of releases: checked library calls, protected stacks, position-independent programs, and address
# tables that are read-only once the program runs.
function(ravelyn_harden target)
  set(release "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
  target_compile_options(${target} INTERFACE
    $<${release}:-U_FORTIFY_SOURCE> $<${release}:-D_FORTIFY_SOURCE=2>
    $<${release}:-fstack-protector-strong> $<${release}:-fstack-clash-protection>)
  target_link_options(${target} INTERFACE
    $<${release}:LINKER:-z,relro> $<${release}:LINKER:-z,now> $<${release}:LINKER:-z,noexecstack>)
endfunction()

# The root asks for position-independent code; this links it as position-independent programs.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
# Sanitizers bring checks of their own.
if(NOT RAVELYN_SANITIZE)
  ravelyn_harden(ravelyn_warnings)
endif()
