# Compile flags of a fuzz build, for the library and the targets alike. Included from the top
# CMakeLists.txt when KESTRO_BUILD_FUZZ is on; meant for a build folder of its own (build-fuzz).
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  message(FATAL_ERROR "KESTRO_BUILD_FUZZ needs clang (libFuzzer): configure with -DCMAKE_CXX_COMPILER=clang++")
endif()
# No recovery: an undefined-behaviour report must end the run, or libFuzzer never sees it.
# The library's assertions make an out-of-range [] on a string or vector a crash as well.
set(KESTRO_FUZZ_FLAGS
  -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
  -fno-omit-frame-pointer -D_GLIBCXX_ASSERTIONS)
add_compile_options(${KESTRO_FUZZ_FLAGS})
add_link_options(-fsanitize=address,undefined)
