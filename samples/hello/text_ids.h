/* Numbers of the texts of hello.exe; #defines only, because resource scripts include this too. */
#ifndef HELLO_TEXT_IDS_H
#define HELLO_TEXT_IDS_H

/* Fixed by ARVMUI: which locale and language a resource library speaks */
#define TEXT_ID_LOCALE_TAG 1
#define TEXT_ID_LANGUAGE_ID 2

/* The program's own; %1, %2 are filled in by the program */
#define TEXT_ID_GREETING 1001
#define TEXT_ID_LOCALE_IN_USE 1002 /* %1 locale tag, %2 language identifier */
#define TEXT_ID_CANDIDATES 1003
#define TEXT_ID_SYSTEM_ERROR 1004 /* %1 error code, %2 the system's text */
#define TEXT_ID_CHILD 1005
#define TEXT_ID_BOX_CAPTION 1006
#define TEXT_ID_BOX_QUESTION 1007
#define TEXT_ID_ANSWER_YES 1008
#define TEXT_ID_ANSWER_NO 1009
#define TEXT_ID_ANSWER_CANCEL 1010
#define TEXT_ID_UNKNOWN_SWITCH 1011 /* %1 the switch */
#define TEXT_ID_USAGE 1012

#endif
