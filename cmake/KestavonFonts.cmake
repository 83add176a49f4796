# The window's typefaces, built from Debian's Inter (scripts/make_tabular_font.py says why).
#
# kestavon_font_files: the OTF files, made at build time; the target kestavon_fonts makes them.
# kestavon_embed_fonts(TARGET): compiles them into TARGET as :/fonts/<name>.otf.

# Debian's own interpreter: another python3 further up the PATH does not see Debian's fonttools.
set(KESTAVON_PYTHON /usr/bin/python3 CACHE FILEPATH "Python 3 that has the fontTools module")
find_path(KESTAVON_INTER_FOLDER NAMES Inter-Regular.otf
    PATHS /usr/share/fonts/opentype/inter NO_DEFAULT_PATH)
if(NOT KESTAVON_INTER_FOLDER)
    message(FATAL_ERROR "The typeface Inter is missing (package fonts-inter). './dev setup' installs it.")
endif()
execute_process(COMMAND ${KESTAVON_PYTHON} -c "import fontTools" RESULT_VARIABLE failed OUTPUT_QUIET ERROR_QUIET)
if(failed)
    message(FATAL_ERROR
        "${KESTAVON_PYTHON} has no fontTools (package python3-fonttools). './dev setup' installs it.")
endif()

set(kestavon_font_folder ${CMAKE_BINARY_DIR}/fonts)
set(kestavon_font_files
    InterTabular-Regular.otf
    InterTabular-Medium.otf
    InterTabular-SemiBold.otf
    InterTabular-Bold.otf
    InterDisplayTabular-Bold.otf)
list(TRANSFORM kestavon_font_files PREPEND ${kestavon_font_folder}/)

add_custom_command(OUTPUT ${kestavon_font_files}
    COMMAND ${KESTAVON_PYTHON} ${CMAKE_SOURCE_DIR}/scripts/make_tabular_font.py
        ${KESTAVON_INTER_FOLDER} ${kestavon_font_folder}
    DEPENDS ${CMAKE_SOURCE_DIR}/scripts/make_tabular_font.py
    COMMENT "Building the typefaces with tabular digits"
    VERBATIM)
add_custom_target(kestavon_fonts DEPENDS ${kestavon_font_files})

function(kestavon_embed_fonts target)
    qt_add_resources(${target} fonts PREFIX /fonts BASE ${kestavon_font_folder} FILES ${kestavon_font_files})
    add_dependencies(${target} kestavon_fonts)
endfunction()
