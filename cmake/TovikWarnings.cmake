# One list of warnings for the library, tests, benchmarks and examples alike;
# sanitizers are an option, not a build type.
set(TOVIK_WARNINGS -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual
    $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local>)
if(TOVIK_WERROR)
  list(APPEND TOVIK_WARNINGS -Werror)
endif()

if(TOVIK_SANITIZE)
  set(TOVIK_SANITIZE_FLAGS -fsanitize=address,undefined -fno-sanitize-recover=all
      -fno-omit-frame-pointer)
  add_compile_options(${TOVIK_SANITIZE_FLAGS})
  add_link_options(${TOVIK_SANITIZE_FLAGS})
endif()

function(tovik_apply_warnings target)
  target_compile_options(${target} PRIVATE ${TOVIK_WARNINGS})
endfunction()
