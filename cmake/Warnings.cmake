# Warnings on and clean for everything the project compiles.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow=local -Wno-missing-field-initializers)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wno-interference-size>)
endif()
