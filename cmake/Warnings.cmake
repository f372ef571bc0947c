add_compile_options(-Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wunused
                    -Wformat=2 -Wimplicit-fallthrough)
# A window's accessor bears the name of its class, which the full -Wshadow of g++ takes for a mistake.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options(-Wshadow=local)
else()
  add_compile_options(-Wshadow)
endif()
if(DRAVIK_WERROR)
  add_compile_options(-Werror)
endif()
