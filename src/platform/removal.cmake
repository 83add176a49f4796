# Moving and removing: everything that may take a file from its place.
target_sources(kestavon_platform PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/file_error.cpp
    ${CMAKE_CURRENT_LIST_DIR}/put_back.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/file_mover.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/file_places.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/file_remover.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/protected_places.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/copied_remainder.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/copy_verification.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/deed_journal.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/entry_status.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/file_copy.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/finish_deeds.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/folder_listing.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/item_place.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/metadata.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/move_across_devices.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/move_item.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/patience.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/remove_file.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/remove_surveyed.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/remove_tree.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/rename_item.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/tree_copy.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/tree_cursor.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/tree_survey.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/removal/unfinished_moves.cpp)
