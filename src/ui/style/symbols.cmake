# Compiles the symbols in as :/symbols/<name>.svg. symbols.tsv names each one's drawing: a file of
# Debian's bootstrap-icons, or "ours" for one in icons/, drawn where the set has no good glyph.

find_path(KESTAVON_SYMBOL_FOLDER NAMES gear.svg PATHS /usr/share/bootstrap-icons/svg NO_DEFAULT_PATH)
if(NOT KESTAVON_SYMBOL_FOLDER)
    message(FATAL_ERROR
        "The symbols are missing (package bootstrap-icons). './dev setup' installs them.")
endif()

set(symbol_table ${CMAKE_CURRENT_LIST_DIR}/symbols.tsv)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${symbol_table})
file(STRINGS ${symbol_table} symbol_rows)
set(symbol_folder ${CMAKE_CURRENT_BINARY_DIR}/symbols)
set(symbol_files)
foreach(row IN LISTS symbol_rows)
    string(REPLACE "\t" ";" row "${row}")
    list(GET row 0 name)
    list(GET row 1 drawing)
    if(drawing STREQUAL "ours")
        set(source ${CMAKE_CURRENT_LIST_DIR}/icons/${name}.svg)
    else()
        set(source ${KESTAVON_SYMBOL_FOLDER}/${drawing}.svg)
    endif()
    configure_file(${source} ${symbol_folder}/${name}.svg COPYONLY)
    list(APPEND symbol_files ${symbol_folder}/${name}.svg)
endforeach()
configure_file(${CMAKE_SOURCE_DIR}/packaging/icons/kestavon.svg ${symbol_folder}/kestavon.svg COPYONLY)
list(APPEND symbol_files ${symbol_folder}/kestavon.svg)
qt_add_resources(kestavon_ui symbols PREFIX /symbols BASE ${symbol_folder} FILES ${symbol_files})
