# Makes the man pages of a program and of its verbs, which its help lists:
# cmake -DHELP2MAN=... "-DPROGRAM=[EMULATOR;[ARGUMENT;]...]PROGRAM" -DPAGES=DIRECTORY -DVERSION=... -P pages.cmake
list(GET PROGRAM -1 name)
get_filename_component(name "${name}" NAME)

# The same pages on every machine and at any time: no date unless one is set, no words of the locale.
set(ENV{LC_ALL} C.UTF-8)
# A leak check is pointless here, and cannot run under every emulator or tracer.
set(ENV{ASAN_OPTIONS} "$ENV{ASAN_OPTIONS}:detect_leaks=0")

execute_process(COMMAND ${PROGRAM} --help OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)
# The lines from a heading of the help to the next empty line.
function(lines_below heading result)
    string(REGEX REPLACE "^.*\n${heading}:\n" "" text "${help}")
    string(REGEX REPLACE "\n\n.*$" "\n" text "${text}")
    string(REGEX MATCHALL "  [^ \n]+ +[^\n]+" lines "${text}")
    if("${text}" STREQUAL "${help}" OR NOT lines)
        message(FATAL_ERROR "the help of ${name} has nothing below '${heading}:'")
    endif()
    set(${result} "${lines}" PARENT_SCOPE)
endfunction()

lines_below(Verbs verbs)
lines_below("Exit status" statuses)

# help2man passes the command to a shell.
set(command)
foreach(word IN LISTS PROGRAM)
    string(REPLACE "'" "'\\''" word "${word}")
    string(APPEND command "'${word}' ")
endforeach()

# Makes PAGE.1 from the help that `command` prints, with more sections as help2man includes them.
function(make_page page command description include)
    file(WRITE "${PAGES}/include" "${include}")
    execute_process(
        COMMAND ${HELP2MAN} --no-info --section=1 "--name=${description}" "--include=${PAGES}/include"
                "--version-string=${page} (${name}) ${VERSION}" "${command}"
        OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE "${PAGES}/include")
    if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
        string(REGEX REPLACE "(\n\\.TH [^\n\"]+ \"1\") \"[^\"]*\"" "\\1 \"\"" text "${text}")
    endif()
    # Groups of the help become sections, and a verb is as bold as the program.
    foreach(section Arguments Verbs "Exit status")
        string(TOUPPER "${section}" upper)
        string(REPLACE "\n.SS \"${section}:\"" "\n.SH \"${upper}\"" text "${text}")
    endforeach()
    string(REGEX REPLACE "\n\\.B ${name}\n\\\\fI\\\\,([a-z-]+) \\\\/\\\\fR" "\n.B ${name} \\1\n" text "${text}")
    file(WRITE "${PAGES}/${page}.1" "${text}")
endfunction()

set(exit_status "[exit status]\n")
foreach(line IN LISTS statuses)
    string(REGEX REPLACE "^  ([^ ]+) +(.*)$" ".TP\n\\1\n\\2\n" line "${line}")
    string(APPEND exit_status "${line}")
endforeach()

file(REMOVE_RECURSE "${PAGES}")
set(see_also)
foreach(line IN LISTS verbs)
    string(REGEX MATCH "^  ([^ ]+) +(.)(.*)$" ignored "${line}")
    set(verb ${CMAKE_MATCH_1})
    set(rest "${CMAKE_MATCH_3}")
    string(TOLOWER "${CMAKE_MATCH_2}" first)
    make_page("${name}-${verb}" "${command}${verb}" "${first}${rest}"
              "${exit_status}\n[see also]\n.BR ${name} (1)\n")
    list(APPEND see_also ".BR ${name}-${verb} (1)")
endforeach()
list(JOIN see_also ",\n" see_also)
make_page("${name}" "${command}" "inspect and change an application's touch-gesture configuration"
          "[see also]\n${see_also}\n")
