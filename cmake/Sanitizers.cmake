# DRAVIK_SANITIZE is a list for -fsanitize, such as "address,undefined" or "thread".
set(DRAVIK_SANITIZE "" CACHE STRING "Sanitizers to build with")
if(DRAVIK_SANITIZE)
  add_compile_options(-fsanitize=${DRAVIK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${DRAVIK_SANITIZE})
endif()
