# Compiler settings of the project's own code: all warnings are errors.
add_library(pevora_warnings INTERFACE)
if(MSVC)
  target_compile_options(pevora_warnings INTERFACE /W4 /WX /utf-8)
else()
  target_compile_options(pevora_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
endif()

option(PEVORA_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
if(PEVORA_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

option(PEVORA_COVERAGE "Build with line coverage" OFF)
if(PEVORA_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()
