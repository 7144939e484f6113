# Flags of everything that is compiled here; nothing of it reaches a program that uses the library.

# A fused multiply-add rounds once where the source rounds twice. Results are to be the same bit for
# bit on every processor, so the compiler may not contract, and -ffast-math is out of the question.
add_compile_options(-ffp-contract=off)

# Nobody reads errno behind a square root; without it, the loop becomes vector code. No value changes.
add_compile_options(-fno-math-errno)

add_compile_options(
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual
  -Wextra-semi -Wundef -Wvla -Wsuggest-override)
if(ZUML_WERROR)
  add_compile_options(-Werror)
endif()

if(ZUML_SANITIZE)
  # The last -O wins, so that this holds for every build type.
  add_compile_options(-O1 -g1 -fno-omit-frame-pointer -fsanitize=${ZUML_SANITIZE}
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${ZUML_SANITIZE})
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
elseif(ZUML_FUZZ)
  message(FATAL_ERROR "ZUML_FUZZ needs ZUML_SANITIZE=address,undefined")
endif()

# The library keeps the -O3 of a Release build, for its pixel loops; what is only compiled to be run
# once or twice is given a cheaper level.
function(zuml_optimise target level)
  if(NOT ZUML_SANITIZE)
    target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:${level}>)
  endif()
endfunction()
