list(APPEND ui_state_sources
    performance/memory_history.cpp performance/memory_history.h
    performance/performance_rules.cpp performance/performance_rules.h
    performance/performance_state.cpp performance/performance_state.h)
list(APPEND ui_module_sources
    performance/memory_chart.cpp performance/memory_chart.h
    performance/memory_sparkline.cpp performance/memory_sparkline.h
    performance/performance_types.h)
list(APPEND ui_qml_files performance/ConsumerRow.qml performance/PerformanceView.qml
    performance/RAMOptimizerButton.qml)
