# Warnings on and clean for everything the project compiles.
add_compile_options(-Wall -Wextra -Wpedantic -Wno-missing-field-initializers)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options(-Wshadow=local $<$<COMPILE_LANGUAGE:CXX>:-Wno-interference-size>)
else()
  add_compile_options(-Wshadow-uncaptured-local)
endif()
