kestavon_test(removal_tests
    SOURCES
        platform/file_mover_test.cpp
        platform/file_remover_test.cpp
        platform/interrupted_copy_test.cpp
        platform/protected_places_test.cpp
        platform/rename_item_test.cpp
        platform/unfinished_deeds_test.cpp
        platform/unfinished_moves_test.cpp
        support/faulty_calls.cpp
        support/tree_picture.cpp
    LINKS kestavon_platform kestavon_test_support GTest::gtest_main)
