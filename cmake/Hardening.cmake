# What makes a release hard to turn against its user: checked library calls, guarded stacks, programs
# that load anywhere, and tables of addresses that nobody can write to once the program runs.
function(ravelyn_harden target)
  set(release "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
  target_compile_options(${target} INTERFACE
    $<${release}:-U_FORTIFY_SOURCE> $<${release}:-D_FORTIFY_SOURCE=2>
    $<${release}:-fstack-protector-strong> $<${release}:-fstack-clash-protection>)
  target_link_options(${target} INTERFACE
    $<${release}:LINKER:-z,relro> $<${release}:LINKER:-z,now> $<${release}:LINKER:-z,noexecstack>)
endfunction()

# Position-independent code is asked for at the top; this makes the programs of it loadable anywhere.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
# Fortified calls need an optimiser, and sanitizers bring checks of their own.
if(NOT RAVELYN_SANITIZE)
  ravelyn_harden(ravelyn_warnings)
endif()
