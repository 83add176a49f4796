# How every target of the project is built.

if(KESTAVON_SANITIZE)
    # Undefined behaviour ends the test; by default it would only be printed.
    add_compile_options(-fsanitize=${KESTAVON_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${KESTAVON_SANITIZE})
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

# The warnings every file of ours is held to; third-party headers are system headers.
add_library(kestavon_warnings INTERFACE)
target_compile_options(kestavon_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast
    $<$<BOOL:${KESTAVON_WERROR}>:-Werror>)

# Targets that compile each header alone, built only when asked for.
set(CMAKE_VERIFY_INTERFACE_HEADER_SETS ON)

# kestavon_library(NAME FOLDER [QT] SOURCES file... LINKS target...)
# A static library of the folder's sources, named relative to src/FOLDER; every header of the folder
# is checked to stand alone by the target all_verify_interface_header_sets. QT runs moc over it.
function(kestavon_library name folder)
    cmake_parse_arguments(PARSE_ARGV 2 ARG "QT" "" "SOURCES;LINKS")
    list(TRANSFORM ARG_SOURCES PREPEND ${CMAKE_SOURCE_DIR}/src/${folder}/)
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${folder}/*.h)
    add_library(${name} STATIC ${ARG_SOURCES})
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${CMAKE_SOURCE_DIR}/src FILES ${headers})
    target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE kestavon_warnings)
    if(NOT ARG_QT)
        set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTOUIC OFF)
    endif()
endfunction()

# kestavon_test(NAME SOURCES file... LINKS target...): a GoogleTest program; files relative to tests/.
function(kestavon_test name)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LINKS")
    list(TRANSFORM ARG_SOURCES PREPEND ${CMAKE_SOURCE_DIR}/tests/)
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${ARG_LINKS} GTest::gmock_main kestavon_warnings)
    # Without the disk cache of QML: tests run side by side, and after every build, and would share it.
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST
        PROPERTIES TIMEOUT 120
        ENVIRONMENT "TZ=UTC;LC_ALL=C.UTF-8;TSAN_OPTIONS=ignore_noninstrumented_modules=1;QT_QPA_PLATFORM=offscreen;QT_QUICK_BACKEND=software;QML_DISABLE_DISK_CACHE=1;QT_FORCE_STDERR_LOGGING=1")
endfunction()
