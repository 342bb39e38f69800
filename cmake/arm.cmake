# A toolchain for an ARM device: Debian's cross compiler builds, and qemu runs the programs of the build. It takes
#     -DARM_TRIPLET=TRIPLET        arm-linux-gnueabihf or aarch64-linux-gnu: the compiler is TRIPLET-g++
#     -DCMAKE_SYSROOT=DIRECTORY    the device's root, with the headers of its libraries and with Qt's tools for this machine
foreach(variable ARM_TRIPLET CMAKE_SYSROOT)
    if(NOT ${variable})
        message(FATAL_ERROR "${variable} is not set: ${CMAKE_CURRENT_LIST_FILE} says what it is")
    endif()
endforeach()
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ARM_TRIPLET CMAKE_SYSROOT)

string(REGEX MATCH "^[^-]+" CMAKE_SYSTEM_PROCESSOR "${ARM_TRIPLET}")
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_CXX_COMPILER ${ARM_TRIPLET}-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${CMAKE_SYSTEM_PROCESSOR}-static -L ${CMAKE_SYSROOT})

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
