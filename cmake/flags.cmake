# Flags for everything that is compiled here. None of them reaches a program that uses the library.

# A fused multiply-add rounds once where the source rounds twice. Results must be the same bit for
# bit on every processor, so the compiler must not contract, and -ffast-math is not used.
add_compile_options(-ffp-contract=off)

# No code reads errno after a square root. Without errno the loop becomes vector code; no value
# changes.
add_compile_options(-fno-math-errno)

add_compile_options(
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual
  -Wextra-semi -Wundef -Wvla -Wsuggest-override)
if(ZUML_WERROR)
  add_compile_options(-Werror)
endif()

if(ZUML_SANITIZE)
  # The last -O wins, so this holds for every build type.
  add_compile_options(-O1 -g1 -fno-omit-frame-pointer -fsanitize=${ZUML_SANITIZE}
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${ZUML_SANITIZE})
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
elseif(ZUML_FUZZ)
  message(FATAL_ERROR "ZUML_FUZZ needs ZUML_SANITIZE=address,undefined")
endif()

# The library keeps the -O3 of a Release build, for its pixel loops. What runs only once or twice
# gets a level that compiles faster.
function(zuml_optimise target level)
  if(NOT ZUML_SANITIZE)
    target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:${level}>)
  endif()
endfunction()
