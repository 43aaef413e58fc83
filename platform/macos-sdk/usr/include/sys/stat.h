#pragma once

#include <sys/cdefs.h>
#include <sys/types.h>
#include <time.h>

#define S_ISDIR(mode) (((mode)&0170000) == 0040000)
#define S_ISREG(mode) (((mode)&0170000) == 0100000)

struct stat {
  int32_t st_dev;
  uint16_t st_mode, st_nlink;
  uint64_t st_ino;
  uint32_t st_uid, st_gid;
  int32_t st_rdev;
  struct timespec st_atimespec, st_mtimespec, st_ctimespec, st_birthtimespec;
  off_t st_size;
  int64_t st_blocks;
  int32_t st_blksize;
  uint32_t st_flags, st_gen;
  int32_t st_lspare;
  int64_t st_qspare[2];
};

__BEGIN_DECLS
int mkdir(const char*, uint16_t);
int stat(const char*, struct stat*)
#ifdef __x86_64__
    __asm("_stat$INODE64")
#endif
        ;
__END_DECLS
