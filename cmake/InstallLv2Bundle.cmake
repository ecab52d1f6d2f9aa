# Run by cmake --install (install(SCRIPT)): copies the built LV2 bundle TARN_LV2_BUNDLE into
# TARN_LV2_INSTALL_DIR, or, when that was left empty at configure time, into ~/.lv2 of whoever
# runs the install, read from HOME now: the configuring user's home may not be the installing
# one's. file(INSTALL) puts DESTDIR in front and records the files in install_manifest.txt.
if(TARN_LV2_INSTALL_DIR)
  set(tarn_lv2_dir "${TARN_LV2_INSTALL_DIR}")
elseif(NOT "$ENV{HOME}" STREQUAL "")
  set(tarn_lv2_dir "$ENV{HOME}/.lv2")
else()
  message(FATAL_ERROR "HOME is not set, so there is no ~/.lv2 to install tarn.lv2 into: set HOME, "
                      "or configure with -DTARN_LV2_INSTALL_DIR=<folder>")
endif()
if(NOT IS_ABSOLUTE "${tarn_lv2_dir}")
  set(tarn_lv2_dir "${CMAKE_INSTALL_PREFIX}/${tarn_lv2_dir}")
endif()
file(INSTALL DESTINATION "${tarn_lv2_dir}" TYPE DIRECTORY FILES "${TARN_LV2_BUNDLE}")
