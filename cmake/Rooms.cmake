# One folder per room under main/. A room lists the rooms it may include, and is built as one static library:
#
#     brellin_room(Agent USES Base Disk System Places LINKS Qt6::Core)
#
# Its sources are the .cpp files in its folder and in the platform's sub-folder (Linux/ or Mac/). LINKS lists external
# libraries besides Qt Core. Rooms with SHOWS (Screens/ folders, Look, the window) use Qt Widgets and moc.

if(APPLE)
    set(BRELLIN_PLATFORM_FOLDER Mac)
else()
    set(BRELLIN_PLATFORM_FOLDER Linux)
endif()

# Precompiled headers shared by all rooms: parsing them takes more than half of the time of compiling a source. One set
# for logic, one with Qt Widgets. Each source still includes what it uses.
set(BRELLIN_PRECOMPILED_LOGIC
    <algorithm> <array> <chrono> <expected> <filesystem> <functional> <map> <memory> <mutex> <optional> <set> <string>
    <string_view> <vector> <QObject> <QPointer> <QString> <QStringList> <QThreadPool> <QTimer> <QUuid> <QVariant>)
set(BRELLIN_PRECOMPILED_SCREENS
    ${BRELLIN_PRECOMPILED_LOGIC} <QAbstractItemView> <QApplication> <QBoxLayout> <QIcon> <QKeyEvent> <QLabel>
    <QLineEdit> <QPainter> <QPushButton> <QStyledItemDelegate> <QWidget>)

function(brellin_precompiled NAME)
    # Unlike WRITE this does not touch an equal file, so that reconfiguring recompiles nothing.
    file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/precompiled/${NAME}.cpp CONTENT "// carries the precompiled headers\n")
    add_library(${NAME} OBJECT ${CMAKE_BINARY_DIR}/precompiled/${NAME}.cpp)
    target_include_directories(${NAME} PRIVATE ${PROJECT_SOURCE_DIR}/main)
    target_precompile_headers(${NAME} PRIVATE ${ARGN})
endfunction()
brellin_precompiled(PrecompiledLogic ${BRELLIN_PRECOMPILED_LOGIC})
target_link_libraries(PrecompiledLogic PRIVATE Qt6::Core)
brellin_precompiled(PrecompiledScreens ${BRELLIN_PRECOMPILED_SCREENS})
target_link_libraries(PrecompiledScreens PRIVATE Qt6::Widgets)

# With BRELLIN_JOINED, groups of COUNT sources are compiled as one (unity build), which parses headers and instantiates
# templates once. They share one unnamed namespace, so names in it must be unique within a room. Single builds (presets
# dev, asan) show missing includes. Two GCC warnings are false alarms in joined sources: shadowing a name of another
# source, and classes with members of a type in an unnamed namespace.
function(brellin_joined TARGET COUNT)
    if(BRELLIN_JOINED)
        set_target_properties(${TARGET} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${COUNT})
        target_compile_options(${TARGET} PRIVATE -Wno-shadow $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
    endif()
endfunction()

function(brellin_room ROOM)
    cmake_parse_arguments(ARG "SHOWS" "" "USES;LINKS" ${ARGN})
    file(GLOB SOURCES CONFIGURE_DEPENDS
        ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h
        ${CMAKE_CURRENT_SOURCE_DIR}/${BRELLIN_PLATFORM_FOLDER}/*.cpp
        ${CMAKE_CURRENT_SOURCE_DIR}/${BRELLIN_PLATFORM_FOLDER}/*.mm)
    if(NOT SOURCES MATCHES "\\.cpp")
        add_library(${ROOM} INTERFACE) # nothing to compile yet
        return()
    endif()
    add_library(${ROOM} STATIC ${SOURCES})
    target_include_directories(${ROOM} PUBLIC ${PROJECT_SOURCE_DIR}/main)
    target_link_libraries(${ROOM} PUBLIC ${ARG_USES} Qt6::Core PRIVATE ${ARG_LINKS} Threads::Threads)
    brellin_joined(${ROOM} 16)
    if(ARG_SHOWS)
        set_target_properties(${ROOM} PROPERTIES AUTOMOC ON)
        target_link_libraries(${ROOM} PUBLIC Qt6::Widgets)
        target_precompile_headers(${ROOM} REUSE_FROM PrecompiledScreens)
    else()
        target_precompile_headers(${ROOM} REUSE_FROM PrecompiledLogic)
    endif()
endfunction()

# The tests of one room: all *Test.cpp files of tests/<Room>/ as one program, whose tests CTest discovers singly. Tests of
# rooms with SHOWS are in tests/<Room>/Screens (AgentScreens: tests/Agent/Screens) and use an offscreen display.
function(brellin_tests ROOM)
    cmake_parse_arguments(ARG "SHOWS" "FOLDER" "USES" ${ARGN})
    if(NOT ARG_FOLDER)
        set(ARG_FOLDER ${ROOM})
    endif()
    file(GLOB SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${ARG_FOLDER}/*Test.cpp)
    if(NOT SOURCES)
        message(FATAL_ERROR "brellin_tests(${ROOM}): no *Test.cpp in ${CMAKE_CURRENT_SOURCE_DIR}/${ARG_FOLDER}")
    endif()
    if(ARG_SHOWS)
        set(SUPPORT WindowTestSupport)
    else()
        set(SUPPORT TestSupport)
    endif()
    add_executable(test_${ROOM} ${SOURCES})
    if(ARG_SHOWS)
        target_precompile_headers(test_${ROOM} REUSE_FROM PrecompiledScreenTests)
    else()
        target_precompile_headers(test_${ROOM} REUSE_FROM PrecompiledTests)
    endif()
    target_link_libraries(test_${ROOM} PRIVATE ${ROOM} ${ARG_USES} ${SUPPORT})
    # "make test ROOM=Agent" builds tests_Agent and runs tests with the label Agent, including those of its screens.
    string(REGEX REPLACE "/.*" "" TOP ${ARG_FOLDER})
    if(NOT TARGET tests_${TOP})
        add_custom_target(tests_${TOP})
    endif()
    add_dependencies(tests_${TOP} test_${ROOM})
    gtest_discover_tests(test_${ROOM} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300 LABELS ${TOP})
endfunction()
