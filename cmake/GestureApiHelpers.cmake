# Like find_package, but names the Debian package of a missing dependency.
macro(gesture_api_require package version debian)
    find_package(${package} ${version} QUIET)
    if(NOT ${package}_FOUND)
        message(FATAL_ERROR "${package} ${version} is missing: install the Debian package ${debian}")
    endif()
endmacro()

# The same for a program. Its Debian package has the same name, or the one in a third argument.
macro(gesture_api_require_program variable program)
    find_program(${variable} ${program} VALIDATOR gesture_api_is_installed)
    if(NOT ${variable})
        set(debian ${ARGN})
        if(NOT debian)
            set(debian ${program})
        endif()
        message(FATAL_ERROR "${program} is missing: install the Debian package ${debian}")
    endif()
endmacro()

# Debian links the names of Qt's programs even if they are not there.
function(gesture_api_is_installed result program)
    execute_process(COMMAND ${program} --version OUTPUT_QUIET ERROR_VARIABLE said)
    if(said MATCHES "could not exec")
        set(${result} FALSE PARENT_SCOPE)
    endif()
endfunction()

# Compiles the texts DIRECTORY/NAME_LANGUAGE.ts into a target. A program finds them below :/NAME/translations.
function(gesture_api_translations target name directory)
    file(GLOB catalogues CONFIGURE_DEPENDS ${directory}/${name}_*.ts)
    set(entries)
    foreach(catalogue ${catalogues})
        cmake_path(GET catalogue STEM language)
        set(compiled ${CMAKE_CURRENT_BINARY_DIR}/${language}.qm)
        add_custom_command(OUTPUT ${compiled} DEPENDS ${catalogue} VERBATIM
            COMMAND ${GESTURE_API_LRELEASE} -silent -nounfinished ${catalogue} -qm ${compiled})
        string(APPEND entries "<file>${language}.qm</file>")
    endforeach()
    set(list ${CMAKE_CURRENT_BINARY_DIR}/${name}_translations.qrc)
    file(CONFIGURE OUTPUT ${list} CONTENT "<RCC><qresource prefix=\"/${name}/translations\">${entries}</qresource></RCC>\n")
    target_sources(${target} PRIVATE ${list})
    set_target_properties(${target} PROPERTIES AUTORCC ON)
    set_source_files_properties(${list} PROPERTIES AUTORCC_OPTIONS "--format-version;1") # without times: equal builds
endfunction()

# The common settings of all targets of this project.
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

# Precompiles the headers that most sources begin with; a test of the checked build then takes a third of the time:
# gesture_api_precompile(TARGET HEADER...) or gesture_api_precompile(TARGET REUSE_FROM OTHER). It hides missing
# includes, so only one preset does it.
function(gesture_api_precompile target)
    if(GESTURE_API_PRECOMPILE AND ARGV1 STREQUAL "REUSE_FROM")
        target_precompile_headers(${target} ${ARGN})
    elseif(GESTURE_API_PRECOMPILE)
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()

# Binds a library to its own functions when it is linked: no start looks them up. In a program without -fPIC a signal
# could then have another address than in the library, and a connection to it would fail. Only a Qt that is linked this
# way, too, gives all its programs that option.
function(gesture_api_bind_functions target)
    get_target_property(options Qt5::Core INTERFACE_COMPILE_OPTIONS)
    if(options MATCHES "-fPIC")
        target_link_options(${target} PRIVATE -Wl,-Bsymbolic-functions)
    endif()
endfunction()

# Adds a shared library of this project: versioned, installed and exported as GestureApi::NAME.
function(gesture_api_shared_library target)
    add_library(${target} SHARED ${ARGN})
    add_library(GestureApi::${target} ALIAS ${target})
    gesture_api_defaults(${target})
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)
    set_target_properties(${target} PROPERTIES
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
        INSTALL_RPATH "$ORIGIN") # finds its neighbours under any prefix
    target_link_options(${target} PRIVATE -Wl,--as-needed -Wl,-O1)
    gesture_api_bind_functions(${target})
    if(NOT CMAKE_CXX_FLAGS MATCHES "sanitize") # only programs have the sanitizers' runtime
        target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
    install(TARGETS ${target} EXPORT GestureApiTargets
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
endfunction()
