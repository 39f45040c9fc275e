add_library(argument_recorder SHARED argument_recorder.cpp argument_recorder.def)
target_link_libraries(argument_recorder PRIVATE arvmui_options)
set_target_properties(argument_recorder PROPERTIES
    PREFIX ""
    RUNTIME_OUTPUT_DIRECTORY "$<1:${ARVMUI_TEST_BIN_DIR}>")
set(rundll_launch_test_OPTIONS DEPENDS argument_recorder)
