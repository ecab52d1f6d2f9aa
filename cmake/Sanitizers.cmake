# Sanitizer builds share one switch so that every target of the tree is instrumented alike.
if(TARN_SANITIZE STREQUAL "address")
  # Clang's undefined group checks float-to-integer conversions that overflow; GCC's leaves that
  # check out and takes it by name, so it is named for both.
  set(tarn_sanitizers address,undefined,float-cast-overflow)
  add_compile_options(-fsanitize=${tarn_sanitizers} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${tarn_sanitizers} -fno-sanitize-recover=all)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # Clang links its sanitizer runtime into executables only, which leaves the LV2 plug-in
    # library (linked with --no-undefined) unresolved. The shared runtime, as GCC uses it, is
    # one library for the whole process; the rpath lets programs find it outside the default
    # library folders.
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-runtime-dir
                    OUTPUT_VARIABLE tarn_sanitizer_runtime_dir OUTPUT_STRIP_TRAILING_WHITESPACE)
    add_link_options(-shared-libsan -Wl,-rpath,${tarn_sanitizer_runtime_dir})
    # Code that steps aside for the sanitizer runtime (the tests' allocation counter replaces
    # malloc otherwise) asks for the macro GCC predefines, which this clang does not.
    add_compile_definitions(__SANITIZE_ADDRESS__=1)
  endif()
elseif(TARN_SANITIZE STREQUAL "thread")
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
elseif(NOT TARN_SANITIZE STREQUAL "")
  message(FATAL_ERROR "TARN_SANITIZE must be empty, 'address' or 'thread', not '${TARN_SANITIZE}'")
endif()

if(TARN_BUILD_FUZZ)
  # Every library is instrumented, so the fuzzers see coverage and faults inside them too.
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined)
  add_link_options(-fsanitize=address,undefined)
endif()
