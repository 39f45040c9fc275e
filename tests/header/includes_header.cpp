// The public header on its own, in the dialect that the build asks for.
#include "includes_header.c"
