add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
                    -Wunused -Wformat=2 -Wimplicit-fallthrough)
if(DRAVIK_WERROR)
  add_compile_options(-Werror)
endif()
