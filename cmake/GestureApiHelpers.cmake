# As find_package, but a package that is missing is told by the name under which Debian installs it.
macro(gesture_api_require package version debian)
    find_package(${package} ${version} QUIET)
    if(NOT ${package}_FOUND)
        message(FATAL_ERROR "${package} ${version} is missing: install the Debian package ${debian}")
    endif()
endmacro()

# The same for a program; Debian's packages are named as the programs that we use.
macro(gesture_api_require_program variable program)
    find_program(${variable} ${program})
    if(NOT ${variable})
        message(FATAL_ERROR "${program} is missing: install the Debian package ${program}")
    endif()
endmacro()

# What every target of this project shares.
function(gesture_api_defaults target)
    set_target_properties(${target} PROPERTIES
        AUTOMOC ON
        CXX_STANDARD 17
        CXX_STANDARD_REQUIRED ON
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_compile_definitions(${target} PRIVATE
        QT_NO_KEYWORDS QT_DEPRECATED_WARNINGS QT_DISABLE_DEPRECATED_BEFORE=0x050f00)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
        "-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=")
endfunction()

# A test of the checked build takes a third of the time when the headers that most sources begin with are read once:
# gesture_api_precompile(TARGET HEADER...) or gesture_api_precompile(TARGET REUSE_FROM OTHER). It hides which header a
# source forgot, so that only one preset does it.
function(gesture_api_precompile target)
    if(GESTURE_API_PRECOMPILE AND ARGV1 STREQUAL "REUSE_FROM")
        target_precompile_headers(${target} ${ARGN})
    elseif(GESTURE_API_PRECOMPILE)
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()

# A shared library of this project: versioned, installed and exported as GestureApi::NAME.
function(gesture_api_shared_library target)
    add_library(${target} SHARED ${ARGN})
    add_library(GestureApi::${target} ALIAS ${target})
    gesture_api_defaults(${target})
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)
    set_target_properties(${target} PROPERTIES
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
        INSTALL_RPATH "$ORIGIN") # its neighbours, wherever the prefix is
    target_link_options(${target} PRIVATE -Wl,--as-needed)
    if(NOT CMAKE_CXX_FLAGS MATCHES "sanitize") # whose runtime only programs have
        target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
    install(TARGETS ${target} EXPORT GestureApiTargets
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
endfunction()
