# Warnings on for every target of the project; the build stays warning-free.
function(tessaly_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow=local
    -Wnon-virtual-dtor -Wcast-align -Woverloaded-virtual -Wimplicit-fallthrough)
endfunction()
