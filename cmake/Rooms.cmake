# One folder per room under main/. A room says which rooms it may know, and gets one static library:
#
#     brellin_room(Agent USES Base Disk System Places LINKS Qt6::Core)
#
# Its sources are the .cpp files of its folder and those of the platform's sub-folder (Linux/ or Mac/). LINKS names
# libraries from outside. Qt Core comes with every room. A room that SHOWS something (a Screens/ folder, Look, the
# window) gets Qt Widgets and Qt's meta-object compiler.

if(APPLE)
    set(BRELLIN_PLATFORM_FOLDER Mac)
else()
    set(BRELLIN_PLATFORM_FOLDER Linux)
endif()

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
    if(ARG_SHOWS)
        set_target_properties(${ROOM} PROPERTIES AUTOMOC ON)
        target_link_libraries(${ROOM} PUBLIC Qt6::Widgets)
    endif()
endfunction()

# The tests of one room: all *Test.cpp files of tests/<Room>/ in one program, found by CTest one by one. The tests of what
# SHOWS something lie in tests/<Room>/Screens (AgentScreens: tests/Agent/Screens) and run in an offscreen window.
function(brellin_tests ROOM)
    cmake_parse_arguments(ARG "SHOWS" "FOLDER" "USES" ${ARGN})
    if(NOT ARG_FOLDER)
        set(ARG_FOLDER ${ROOM})
    endif()
    file(GLOB SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${ARG_FOLDER}/*Test.cpp)
    if(NOT SOURCES)
        return()
    endif()
    if(ARG_SHOWS)
        set(SUPPORT WindowTestSupport)
    else()
        set(SUPPORT TestSupport)
    endif()
    add_executable(test_${ROOM} ${SOURCES})
    target_link_libraries(test_${ROOM} PRIVATE ${ROOM} ${ARG_USES} ${SUPPORT})
    gtest_discover_tests(test_${ROOM} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
endfunction()
