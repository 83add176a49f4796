# Sorting, filtering and selecting records: free of Qt, so that the sanitizers see all of it.
set(folder ${CMAKE_SOURCE_DIR}/src/core/model)
add_library(kestavon_queries STATIC
    ${folder}/record_filter.cpp
    ${folder}/record_queries.cpp
    ${folder}/record_selection.cpp
    ${folder}/record_view.cpp
    ${folder}/text_finder.cpp
    ${folder}/text_folding.cpp)
target_sources(kestavon_queries PUBLIC FILE_SET HEADERS BASE_DIRS ${CMAKE_SOURCE_DIR}/src FILES
    ${folder}/record_filter.h
    ${folder}/record_queries.h
    ${folder}/record_selection.h
    ${folder}/record_set.h
    ${folder}/record_view.h
    ${folder}/text_finder.h
    ${folder}/text_folding.h)
target_link_libraries(kestavon_queries
    PUBLIC kestavon_domain kestavon_concurrency
    PRIVATE kestavon_warnings ICU::uc)
set_target_properties(kestavon_queries PROPERTIES AUTOMOC OFF AUTOUIC OFF)
