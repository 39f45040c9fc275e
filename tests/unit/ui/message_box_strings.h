/* Strings of the test program's own, for message boxes that name them by number. */
#define TEST_STRING_TEXT 7001
#define TEST_STRING_CAPTION 7002
