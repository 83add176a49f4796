# Removing, and deciding what merging removes: a library of its own because it knows nothing of Qt.
add_library(kestavon_removal_worker STATIC
    ${CMAKE_CURRENT_SOURCE_DIR}/core/model/copy_removal.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/core/model/duplicate_merge.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/core/model/removal_actions.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/core/model/removal_worker.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/core/model/work_meter.cpp)
set_target_properties(kestavon_removal_worker PROPERTIES AUTOMOC OFF AUTOUIC OFF)
target_include_directories(kestavon_removal_worker PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(kestavon_removal_worker
    PUBLIC kestavon_duplicates kestavon_platform kestavon_domain
    PRIVATE kestavon_warnings)
