# The Trash: the desktop's own, and that of a Mac's home.
target_sources(kestavon_platform PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/linux/descriptor_io.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/trash/directory_sizes.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/trash/freedesktop_trash.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/trash/mac_trash.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/mount_table.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/trash/mounted_volumes.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/trash/system_trash.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/trash/trash_folder.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/trash/trash_info.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/trash/trash_names.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/trash/trash_places.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/trash/trash_record.cpp
    ${CMAKE_CURRENT_LIST_DIR}/linux/trash/trashable_item.cpp)
