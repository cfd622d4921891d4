# How clients see our headers: <Vokit/PropertySet> and <Vokit/TypedProperties.h>, never a folder of
# ours. In the build tree both are one-line files that lead to the source; installed, the headers
# lie in Vokit/ themselves, with the extensionless names beside them. A second library has a folder
# and an umbrella header of its own, which VOKIT_HEADER_FOLDER names.

set(VOKIT_INCLUDE_DIR "${PROJECT_BINARY_DIR}/include")
set(VOKIT_HEADER_FOLDER Vokit)

# vokit_headers(Folder/Name.h [CLASSES Class...] ...): publishes headers of the current folder.
# A header serves the class of its own name, unless CLASSES behind it names others.
function(vokit_headers)
    set(header "")
    set(classes "")
    set(named FALSE)
    foreach(word IN LISTS ARGN ITEMS "end.h")
        if(word STREQUAL "CLASSES")
            set(named TRUE)
            set(classes "")
        elseif(word MATCHES "\\.h$")
            if(header)
                _vokit_publish("${header}" "${classes}")
            endif()
            set(header "${word}")
            get_filename_component(classes "${word}" NAME_WE)
        else()
            list(APPEND classes "${word}")
        endif()
    endforeach()
endfunction()

function(_vokit_publish header classes)
    get_filename_component(path "${header}" ABSOLUTE)
    get_filename_component(name "${header}" NAME)
    file(CONFIGURE OUTPUT "${VOKIT_INCLUDE_DIR}/${VOKIT_HEADER_FOLDER}/${name}" CONTENT "#include \"${path}\"\n")
    install(FILES "${path}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${VOKIT_HEADER_FOLDER}")
    foreach(class IN LISTS classes)
        file(CONFIGURE OUTPUT "${VOKIT_INCLUDE_DIR}/${VOKIT_HEADER_FOLDER}/${class}" CONTENT "#include \"${name}\"\n")
        install(FILES "${VOKIT_INCLUDE_DIR}/${VOKIT_HEADER_FOLDER}/${class}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${VOKIT_HEADER_FOLDER}")
    endforeach()
    set_property(GLOBAL APPEND PROPERTY ${VOKIT_HEADER_FOLDER}_UMBRELLA "${name}")
endfunction()

# vokit_umbrella_header(): writes <Vokit/Vokit.h>, or its like, which brings in
# all that was published to that folder.
function(vokit_umbrella_header)
    get_property(names GLOBAL PROPERTY ${VOKIT_HEADER_FOLDER}_UMBRELLA)
    list(TRANSFORM names REPLACE "(.+)" "#include \"\\1\"\n" OUTPUT_VARIABLE lines)
    list(JOIN lines "" lines)
    set(path "${VOKIT_INCLUDE_DIR}/${VOKIT_HEADER_FOLDER}/${VOKIT_HEADER_FOLDER}.h")
    file(CONFIGURE OUTPUT "${path}" CONTENT "#pragma once\n${lines}")
    install(FILES "${path}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${VOKIT_HEADER_FOLDER}")
endfunction()
