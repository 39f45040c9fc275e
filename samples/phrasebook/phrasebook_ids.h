/* Numbers of everything in the resource libraries of phrasebook.exe; #defines only, because resource
 * scripts include this too. */
#ifndef PHRASEBOOK_IDS_H
#define PHRASEBOOK_IDS_H

/* Fixed by ARVMUI: which locale and language a resource library speaks */
#define TEXT_ID_LOCALE_TAG 1
#define TEXT_ID_LANGUAGE_ID 2

/* The program's own texts; %1, %2 are filled in by the program */
#define TEXT_ID_LANGUAGE_NAME 1001
#define TEXT_ID_TITLE 1002
#define TEXT_ID_TRANSLATION_LABEL 1003 /* %1 name of the language translated into */
#define TEXT_ID_STATUS_LANGUAGE 1004   /* %1 locale tag */
#define TEXT_ID_STATUS_NEXT_START 1005
#define TEXT_ID_QUESTION 1006     /* %1 phrase in the other language, %2 in the user's */
#define TEXT_ID_ANSWER_RIGHT 1007 /* %1, %2 as above */
#define TEXT_ID_ANSWER_WRONG 1008 /* %1, %2 as above */
#define TEXT_ID_ABOUT 1009        /* %1 name of the program's language, %2 locale tag */

/* The phrases, numbered without a gap; every language has the same ones in the same order. */
#define TEXT_ID_FIRST_PHRASE 2001

#define MENU_ID_MAIN 100
#define ACCELERATORS_ID_MAIN 100
#define COMMAND_ID_QUESTION 101
#define COMMAND_ID_EXIT 102
#define COMMAND_ID_TARGET 103
#define COMMAND_ID_PREFERRED_LANGUAGES 104
#define COMMAND_ID_ABOUT 105

#define DIALOG_ID_MAIN 200
#define CONTROL_ID_PHRASES 201
#define CONTROL_ID_TRANSLATION_LABEL 202
#define CONTROL_ID_TRANSLATION 203
#define CONTROL_ID_STATUS 204

#define DIALOG_ID_TARGET 210
#define CONTROL_ID_TARGETS 211

/* Window class of the main window, which its dialog template names */
#define MAIN_WINDOW_CLASS "ArvmuiPhrasebook"

/* The program's own icon */
#define ICON_ID_PROGRAM 1

#endif
