# Precompiled headers, for builds with tests only: the builds that ship, and the second compiler's, go without, so a
# source that leans on an include of these lists still fails there. Headers are verified alone in any case.
#
# Each kind is compiled once, by an object library of its own, and shared by every target of the same compiler flags:
#   std      the standard library                       for rooms
#   test     the same and GoogleTest                    for test programs
#   qt       the standard library and Qt's widgets      for the window's room
#   qt_test  the same, GoogleTest and Qt Test           for test programs of the window

set(zelvo_std_headers <algorithm> <array> <atomic> <chrono> <cstddef> <cstdint> <filesystem> <functional> <map> <memory>
    <mutex> <optional> <span> <string> <string_view> <system_error> <thread> <utility> <vector>)
set(zelvo_test_headers <gmock/gmock.h> <gtest/gtest.h>)
# What most sources of the window include, and no more: all of <QtWidgets> takes twice as long to load.
set(zelvo_qt_headers <QAccessible> <QApplication> <QBoxLayout> <QEvent> <QImage> <QLabel> <QLineEdit> <QPainter>
    <QPointer> <QPushButton> <QString> <QStringList> <QStyle> <QTimer> <QWidget>)
set(zelvo_qt_definitions QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_FOREACH)

# zelvo_precompiled_kind(KIND HEADERS a b LINKS x y): the library that compiles the headers of that kind.
function(zelvo_precompiled_kind kind)
  cmake_parse_arguments(KIND "" "" "HEADERS;LINKS;DEFINITIONS" ${ARGN})
  set(source ${PROJECT_BINARY_DIR}/generated/precompiled/${kind}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "// Carries the precompiled headers of its kind.\n")
  add_library(zelvo_precompiled_${kind} OBJECT EXCLUDE_FROM_ALL ${source})
  target_link_libraries(zelvo_precompiled_${kind} PRIVATE zelvo_flags ${KIND_LINKS})
  target_compile_definitions(zelvo_precompiled_${kind} PRIVATE ${KIND_DEFINITIONS})
  target_precompile_headers(zelvo_precompiled_${kind} PRIVATE ${KIND_HEADERS})
endfunction()

# zelvo_precompile(TARGET KIND): lets the target use the headers of that kind, where they are asked for.
function(zelvo_precompile target kind)
  if(NOT ZELVO_PRECOMPILE)
    return()
  endif()
  if(NOT TARGET zelvo_precompiled_${kind})
    message(FATAL_ERROR "there are no precompiled headers of the kind ${kind}")
  endif()
  target_precompile_headers(${target} REUSE_FROM zelvo_precompiled_${kind})
endfunction()

# zelvo_precompiled_kinds(): declares every kind that this build can use; called once all packages are found.
function(zelvo_precompiled_kinds)
  if(NOT ZELVO_PRECOMPILE)
    return()
  endif()
  zelvo_precompiled_kind(std HEADERS ${zelvo_std_headers})
  if(ZELVO_TESTS)
    zelvo_precompiled_kind(test HEADERS ${zelvo_std_headers} ${zelvo_test_headers} LINKS zelvo_test_flags GTest::gmock)
  endif()
  if(ZELVO_WINDOW)
    zelvo_precompiled_kind(qt HEADERS ${zelvo_std_headers} ${zelvo_qt_headers}
      LINKS Qt6::Widgets Qt6::Svg Qt6::DBus $<$<BOOL:${ZELVO_PREVIEW}>:PkgConfig::LIBMPV>
      DEFINITIONS ${zelvo_qt_definitions})
  endif()
endfunction()

# zelvo_precompiled_window_tests(): declares the kind qt_test. Qt Test puts each target's folder into its flags, so this
# is called in the one folder that holds such tests.
function(zelvo_precompiled_window_tests)
  if(ZELVO_PRECOMPILE)
    zelvo_precompiled_kind(qt_test HEADERS ${zelvo_std_headers} ${zelvo_test_headers} ${zelvo_qt_headers} <QTest>
      LINKS zelvo_test_flags GTest::gmock Qt6::Test Qt6::Widgets Qt6::Svg Qt6::DBus DEFINITIONS ${zelvo_qt_definitions})
  endif()
endfunction()
