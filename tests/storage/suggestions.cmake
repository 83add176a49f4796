kestavon_test(cleanup_suggestions_test
    SOURCES storage/cleanup_suggestions_test.cpp
    LINKS kestavon_storage)
