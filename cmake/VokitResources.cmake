# vokit_catalogues(target Name_language.ts...): compiles the catalogues into the target, which has
# them as :/Translations/Name_language.qm from its load to its unload.
function(vokit_catalogues target)
    qt5_add_translation(compiled ${ARGN} OPTIONS -silent)
    list(TRANSFORM compiled REPLACE "^.*/(.+)$" "    <file>\\1</file>\n" OUTPUT_VARIABLE files)
    list(JOIN files "" files)
    # rcc takes the name of its two functions, qInitResources_Translations and its counterpart, from
    # the file. They stay hidden, like all symbols by default: a client may have its own "Translations".
    set(list "${CMAKE_CURRENT_BINARY_DIR}/Translations.qrc")
    file(CONFIGURE OUTPUT "${list}"
        CONTENT "<RCC>\n<qresource prefix=\"/Translations\">\n${files}</qresource>\n</RCC>\n")
    qt5_add_resources(resources "${list}")
    target_sources(${target} PRIVATE ${resources})
endfunction()
