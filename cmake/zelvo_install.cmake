# What is installed, and where. Below PREFIX (CMAKE_INSTALL_PREFIX, "/opt" unless another is given):
#
#   zelvo/avi-repair/Applications/Zelvo AVI Repair/Zelvo AVI Repair.app     the window's bundle; component "window"
#   zelvo/avi-repair/Applications/Zelvo AVI Repair.app                      a link to it
#   bin/zelvo-avi-repair                                                    a link to the program in it
#   share/applications, share/metainfo, share/icons                         what desktops read
#   bin/zelvo-avi                                                           the command line; component "cli"
#   bin/zelvo-avi-decoder                                                   what it tries payloads with
#   bin/zelvo-avi-player                                                    what it plays films with
#
# Every link is relative, so the tree may be staged anywhere and moved as a whole.
# Decision: install, The program finds its own bundle

# Decision: install, Distributors give the addresses
set(ZELVO_UPDATE_URL "" CACHE STRING
    "Address of the published property list that the update check reads; empty for no update check")
set(ZELVO_PLAYER_URL "https://mpv.io/" CACHE STRING
    "Page of a video player, opened when a film cannot be shown; empty for none")
set(ZELVO_BUNDLE_ROOT "." CACHE STRING "Folder below the install prefix that holds zelvo/avi-repair")

if(CMAKE_INSTALL_PREFIX_INITIALIZED_TO_DEFAULT)
  set(CMAKE_INSTALL_PREFIX /opt CACHE PATH "Where the programs are installed" FORCE)
endif()
include(GNUInstallDirs)
foreach(folder CMAKE_INSTALL_BINDIR CMAKE_INSTALL_DATADIR ZELVO_BUNDLE_ROOT)
  if(IS_ABSOLUTE "${${folder}}")
    message(FATAL_ERROR "${folder} must be relative to the install prefix, since the links in it are relative.")
  endif()
endforeach()

set(zelvo_applications "${ZELVO_BUNDLE_ROOT}/zelvo/avi-repair/Applications")
# Four components above the bundle lies a folder that holds nothing but ours: leftovers of updates are removed there.
# Decision: install, The bundle lies four folders deep
set(zelvo_bundle "${zelvo_applications}/Zelvo AVI Repair/Zelvo AVI Repair.app")
set(zelvo_help "Contents/MacOS/Manual/Zelvo AVI Repair")
set(zelvo_generated ${PROJECT_BINARY_DIR}/generated/install)

# zelvo_relative_link(VARIABLE FOLDER TARGET): what a link in FOLDER says to lead to TARGET, both below the prefix.
function(zelvo_relative_link variable folder target)
  cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY /prefix NORMALIZE)
  cmake_path(ABSOLUTE_PATH target BASE_DIRECTORY /prefix NORMALIZE)
  cmake_path(RELATIVE_PATH target BASE_DIRECTORY "${folder}")
  set(${variable} "${target}" PARENT_SCOPE)
endfunction()

# zelvo_info_plist(FILE): writes the bundle's property list. An address that is not set has no key at all.
function(zelvo_info_plist file)
  set(ZELVO_INFO_ADDRESSES "")
  foreach(entry "cloudPlistUrl;${ZELVO_UPDATE_URL}" "playerDownloadUrl;${ZELVO_PLAYER_URL}")
    list(POP_FRONT entry key)
    if(entry)
      string(REPLACE "&" "&amp;" entry "${entry}")
      string(REPLACE "<" "&lt;" entry "${entry}")
      string(APPEND ZELVO_INFO_ADDRESSES "\t<key>${key}</key>\n\t<string>${entry}</string>\n")
    endif()
  endforeach()
  configure_file(${PROJECT_SOURCE_DIR}/packaging/Info.plist.in "${file}" @ONLY)
endfunction()

# zelvo_bundle_beside_the_programs(): the same bundle, without a program, below the folder of the programs just built.
# That folder stands for PREFIX, so a program that was not installed finds its pictures and its help.
function(zelvo_bundle_beside_the_programs)
  set(applications "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/zelvo/avi-repair/Applications")
  set(bundle "${applications}/Zelvo AVI Repair/Zelvo AVI Repair.app")
  file(MAKE_DIRECTORY "${bundle}/${zelvo_help}")
  zelvo_info_plist("${bundle}/Contents/Info.plist")
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/resources/pictures "${bundle}/Contents/Resources" SYMBOLIC)
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/resources/help/HTML "${bundle}/${zelvo_help}/HTML" SYMBOLIC)
  file(CREATE_LINK "Zelvo AVI Repair/Zelvo AVI Repair.app" "${applications}/Zelvo AVI Repair.app" SYMBOLIC)
endfunction()

function(zelvo_install_papers component package)
  install(FILES ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${PROJECT_SOURCE_DIR}/packaging/copyright
          DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component})
endfunction()

# zelvo_install_manual(COMPONENT NAME): the manual page packaging/NAME.1.in, packed as readers of such pages expect.
function(zelvo_install_manual component name)
  set(page ${zelvo_generated}/${name}.1)
  configure_file(packaging/${name}.1.in ${page} @ONLY)
  file(ARCHIVE_CREATE OUTPUT ${page}.gz PATHS ${page} FORMAT raw COMPRESSION GZip COMPRESSION_LEVEL 9)
  install(FILES ${page}.gz DESTINATION ${CMAKE_INSTALL_DATADIR}/man/man1 COMPONENT ${component})
endfunction()

function(zelvo_install_window)
  zelvo_info_plist(${zelvo_generated}/Info.plist)
  zelvo_relative_link(program "${CMAKE_INSTALL_BINDIR}" "${zelvo_bundle}/Contents/MacOS/zelvo-avi-repair")
  file(CREATE_LINK "${program}" ${zelvo_generated}/zelvo-avi-repair SYMBOLIC)
  file(CREATE_LINK "Zelvo AVI Repair/Zelvo AVI Repair.app" "${zelvo_generated}/Zelvo AVI Repair.app" SYMBOLIC)

  set(resources ${PROJECT_SOURCE_DIR}/resources)
  # The command line does the window's deep repair. It lies beside it, since its own package may not be there.
  install(TARGETS zelvo-avi-repair zelvo-avi-probe zelvo-avi zelvo-avi-decoder
          RUNTIME DESTINATION "${zelvo_bundle}/Contents/MacOS" COMPONENT window)
  install(FILES ${zelvo_generated}/Info.plist DESTINATION "${zelvo_bundle}/Contents" COMPONENT window)
  install(DIRECTORY ${resources}/pictures/ DESTINATION "${zelvo_bundle}/Contents/Resources" COMPONENT window
          FILES_MATCHING PATTERN "*.svg")
  install(DIRECTORY ${resources}/help/HTML DESTINATION "${zelvo_bundle}/${zelvo_help}" COMPONENT window)
  install(FILES "${zelvo_generated}/Zelvo AVI Repair.app" DESTINATION "${zelvo_applications}" COMPONENT window)
  install(FILES ${zelvo_generated}/zelvo-avi-repair DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT window)

  set(share ${CMAKE_INSTALL_DATADIR})
  install(FILES packaging/zelvo-avi-repair.desktop DESTINATION ${share}/applications COMPONENT window)
  install(FILES packaging/com.zelvo.avi_repair.metainfo.xml DESTINATION ${share}/metainfo COMPONENT window)
  install(FILES ${resources}/pictures/zelvo-avi-repair.svg DESTINATION ${share}/icons/hicolor/scalable/apps
          COMPONENT window)
  zelvo_install_papers(window zelvo-avi-repair)
  zelvo_install_manual(window zelvo-avi-repair)
endfunction()

file(MAKE_DIRECTORY ${zelvo_generated})
install(TARGETS zelvo-avi zelvo-avi-decoder zelvo-avi-player
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT cli)
zelvo_install_papers(cli zelvo-avi)
install(PROGRAMS ${PROJECT_SOURCE_DIR}/packaging/slurm/zelvo-avi.sbatch
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/zelvo-avi/examples COMPONENT cli)
zelvo_install_manual(cli zelvo-avi)
set(zelvo_components cli)
if(TARGET zelvo-avi-repair)
  zelvo_install_window()
  zelvo_bundle_beside_the_programs()
  list(APPEND zelvo_components window)
endif()
include(cmake/zelvo_packages.cmake)
