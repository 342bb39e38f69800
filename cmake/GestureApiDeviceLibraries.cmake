# Finds the device's own libraries by name on the prefix path; used by the build and by the installed package.
foreach(library baseutil vxcomponents devcaps slateview)
    if(NOT TARGET GestureApi::${library})
        find_library(GESTURE_API_${library}_LIBRARY ${library} REQUIRED
                     DOC "The device library lib${library}.so")
        add_library(GestureApi::${library} SHARED IMPORTED GLOBAL)
        set_target_properties(GestureApi::${library} PROPERTIES
            IMPORTED_LOCATION "${GESTURE_API_${library}_LIBRARY}")
    endif()
endforeach()
