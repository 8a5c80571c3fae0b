find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

# Toolkit-free libraries, needed by fuzz builds as well.
pkg_check_modules(TAGLIB REQUIRED IMPORTED_TARGET taglib)
pkg_check_modules(MPG123 REQUIRED IMPORTED_TARGET libmpg123)
pkg_check_modules(SNDFILE REQUIRED IMPORTED_TARGET sndfile)
# The FFmpeg input plug-in: demuxing, decoding, and the conversion to 16-bit stereo or mono.
pkg_check_modules(AVFORMAT REQUIRED IMPORTED_TARGET libavformat)
pkg_check_modules(AVCODEC REQUIRED IMPORTED_TARGET libavcodec)
pkg_check_modules(SWRESAMPLE REQUIRED IMPORTED_TARGET libswresample)
pkg_check_modules(AVUTIL REQUIRED IMPORTED_TARGET libavutil)
pkg_check_modules(ALSA REQUIRED IMPORTED_TARGET alsa)
pkg_check_modules(PULSE REQUIRED IMPORTED_TARGET libpulse)

if(NOT VERDIN_FUZZ)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Core DBus Gui Widgets Test)
  pkg_check_modules(DBUS1 REQUIRED IMPORTED_TARGET dbus-1)  # the notification plug-in
  if(VERDIN_TESTS)
    find_package(GTest REQUIRED)
  endif()
  if(VERDIN_BENCH)
    find_package(benchmark REQUIRED)
  endif()
endif()
