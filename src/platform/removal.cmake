# Moving and removing: everything that may take a file from its place.
target_sources(kestavon_platform PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/file_error.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/item_place.cpp)
