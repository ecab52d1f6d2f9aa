# Sanitizer builds share one switch so that every target of the tree is instrumented alike.
if(TARN_SANITIZE STREQUAL "address")
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined -fno-sanitize-recover=all)
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
