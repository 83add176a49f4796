kestavon_test(record_queries_tests
    SOURCES
        core/model/record_filter_test.cpp
        core/model/record_queries_test.cpp
        core/model/record_selection_test.cpp
        core/model/text_folding_test.cpp
    LINKS kestavon_queries ICU::uc GTest::gtest_main)
