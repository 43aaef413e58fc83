#pragma once

#include <sys/cdefs.h>

#define _CTYPE_A 0x100
#define _CTYPE_C 0x200
#define _CTYPE_D 0x400
#define _CTYPE_L 0x1000
#define _CTYPE_P 0x2000
#define _CTYPE_S 0x4000
#define _CTYPE_U 0x8000
#define _CTYPE_X 0x10000
#define _CTYPE_B 0x20000
#define _CTYPE_R 0x40000

typedef unsigned int __uint32_t;

__BEGIN_DECLS
int isalnum(int);
int isalpha(int);
int isascii(int);
int iscntrl(int);
int isdigit(int);
int isgraph(int);
int islower(int);
int isprint(int);
int ispunct(int);
int isspace(int);
int isupper(int);
int isxdigit(int);
int tolower(int);
int toupper(int);
__END_DECLS
