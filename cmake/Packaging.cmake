# "cpack -G DEB" in the build folder makes verdin_<version>_<arch>.deb from the install
# rules: the program, its libraries and plug-ins under /usr/lib/verdin, the data, the
# desktop files and the plug-in headers, all in one package.
set(CPACK_PACKAGE_NAME verdin)
set(CPACK_PACKAGE_VENDOR Brimfell)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION
  "Verdin plays a main playlist of files, folders, URLs, nested playlists and random\n\
entries through input plug-ins (MP3, WAV, AIFF, AU, FLAC, Ogg Vorbis, Opus, AAC, ALAC,\n\
WavPack, Monkey's Audio, WMA and more through FFmpeg), a 16-band\n\
equalizer and DSP plug-ins, into ALSA, PulseAudio or WAV files. It runs as one instance\n\
that the desktop, the command line and D-Bus control.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_PACKAGE_NAME verdin)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Brimfell <verdin@brimfell.invalid>")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${PROJECT_HOMEPAGE_URL})
# Depends from the libraries the binaries link, found by dpkg-shlibdeps; the player's own
# libraries in lib/verdin are inside the package.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${VERDIN_LIB_DIR})
# The sound-card output opens libasound, and the bars plug-in Xlib, when first used rather
# than linking them, so shlibdeps cannot see those needs.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libasound2, libx11-6")
# The PulseAudio output loads its client library only when chosen; ALSA needs none.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS libpulse0)
include(CPack)
