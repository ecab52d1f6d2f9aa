# The Cocoa editor (editor/mac) is Objective-C++. On macOS it builds against AppKit; elsewhere
# against GNUstep when gnustep-config is there, and not at all otherwise (TARN_REQUIRE_COCOA makes
# that an error). Sanitizer and fuzz builds leave it out off macOS: GNUstep's runtime is GCC's and
# is not instrumented. Core-only (cross) builds leave it out too. Sets TARN_COCOA and, for GNUstep, tarn_gnustep_flags and _libs.
option(TARN_REQUIRE_COCOA "Fail when the Cocoa editor cannot be built" OFF)
set(TARN_COCOA OFF)
if(APPLE)
  set(TARN_COCOA ON)
elseif(TARN_SANITIZE STREQUAL "" AND NOT TARN_BUILD_FUZZ AND NOT TARN_CORE_ONLY)
  find_program(TARN_GNUSTEP_CONFIG gnustep-config)
  if(TARN_GNUSTEP_CONFIG)
    set(TARN_COCOA ON)
    execute_process(COMMAND ${TARN_GNUSTEP_CONFIG} --objc-flags OUTPUT_VARIABLE flags
                    OUTPUT_STRIP_TRAILING_WHITESPACE)
    execute_process(COMMAND ${TARN_GNUSTEP_CONFIG} --gui-libs OUTPUT_VARIABLE libs
                    OUTPUT_STRIP_TRAILING_WHITESPACE)
    separate_arguments(flags UNIX_COMMAND "${flags}")
    separate_arguments(tarn_gnustep_libs UNIX_COMMAND "${libs}")
    # GNUstep's headers are taken as system headers, so that -Werror judges only our code; its
    # dependency-file and optimisation flags are the build's business.
    set(tarn_gnustep_flags "")
    foreach(flag IN LISTS flags)
      if(flag MATCHES "^-I(.+)")
        if(IS_DIRECTORY "${CMAKE_MATCH_1}" AND NOT CMAKE_MATCH_1 STREQUAL ".")
          list(APPEND tarn_gnustep_flags -isystem${CMAKE_MATCH_1})
        endif()
      elseif(NOT flag MATCHES "^-(MMD|MP|g|O[0-9s]?|Wall)$")
        list(APPEND tarn_gnustep_flags ${flag})
      endif()
    endforeach()
  endif()
endif()
if(TARN_COCOA)
  if(NOT CMAKE_OBJCXX_COMPILER)
    set(CMAKE_OBJCXX_COMPILER ${CMAKE_CXX_COMPILER})
  endif()
  enable_language(OBJCXX)
  message(STATUS "Cocoa editor: built")
elseif(TARN_REQUIRE_COCOA)
  message(FATAL_ERROR "The Cocoa editor cannot be built: no GNUstep (run scripts/setup), or a "
                      "sanitizer or fuzz build")
else()
  message(STATUS "Cocoa editor: not built (no GNUstep, or a sanitizer, fuzz or core-only build)")
endif()
