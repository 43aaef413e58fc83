/* A plug-in that reaches the host by positions alone: it shares no header with the host that it is
   played with, so that a table with an entry too many or too few shows. It prints what it gets. */

#include <stdint.h>
#include <stdio.h>
#include <string.h>

typedef void (*Function)(void);
typedef const Function* Table;

static Table basic;
static int32_t me;
static int32_t command;

static Table acquire(const char* name, int32_t version) {
  const void* table = NULL;
  ((int32_t(*)(const char*, int32_t, const void**))basic[0])(name, version, &table);
  return table;
}

static void release(const char* name, int32_t version) {
  ((int32_t(*)(const char*, int32_t))basic[1])(name, version);
}

static int32_t call(Function function) {
  return ((int32_t(*)(void))function)();
}

/* Calls what a host without a face has no use for: every position that `supplied` leaves out. */
static void call_the_rest(const char* name, int32_t version, int count, const char* supplied) {
  Table table = acquire(name, version);
  for (int position = 0; position < count; ++position) {
    if (supplied[position] == '*') continue;
    const int32_t result = call(table[position]);
    if (result != 516) printf("%s %d answers %d at %d\n", name, version, result, position);
  }
  release(name, version);
}

static void call_what_is_not_supplied(void) {
  call_the_rest("AEGP Register Suite", 6, 12, "***.....*...");
  call_the_rest("AEGP Utility Suite", 7, 25, "*....**..............*.**");
  call_the_rest("AEGP Utility Suite", 13, 33, "**.....**..............*.***.*.*.");
  call_the_rest("AEGP Proj Suite", 9, 14, "****....*.**..");
  call_the_rest("AEGP Memory Suite", 1, 8, "******.*");
  call_the_rest("PF AE Adv App Suite", 2, 11, ".....*.....");
  call_the_rest("AEGP Persistent Data Suite", 3, 18, "**.**...***..****.");
  call_the_rest("AEGP Persistent Data Suite", 4, 22, "**.**...***....***..*.");
  if (call(basic[6]) != 516) puts("the basic suite answers");
  const void* table = basic;
  ((int32_t(*)(const char*, int32_t, const void**))basic[0])("No Suite", 1, &table);
  if (table != NULL) puts("a missing suite has a table");
}

static void use_windows(void) {
  typedef int32_t (*Log)(const char*, const char*, const char*);
  Table utility = acquire("AEGP Utility Suite", 7);
  ((int32_t(*)(int32_t, const char*))utility[0])(me, "by position");
  ((int32_t(*)(const char*))utility[5])("Undo");
  call(utility[6]);
  ((int32_t(*)(const char*))utility[23])("to the console");
  call(utility[21]);
  ((Log)utility[24])("by position", "test", "to the log");
  release("AEGP Utility Suite", 7);
  utility = acquire("AEGP Utility Suite", 13);
  static const uint16_t text[] = {'U', 'T', 'F', '-', 0xd834, 0xdd1e, 0};
  unsigned char available = 7;
  unsigned char activated = 7;
  ((int32_t(*)(int32_t, const char*))utility[0])(me, "by position too");
  ((int32_t(*)(int32_t, const uint16_t*))utility[1])(me, text);
  ((int32_t(*)(const char*))utility[7])("Undo");
  call(utility[8]);
  ((int32_t(*)(const char*))utility[25])("to the console");
  call(utility[23]);
  ((Log)utility[26])("by position", "test", "to the log");
  ((int32_t(*)(unsigned char*))utility[27])(&available);
  ((int32_t(*)(unsigned char*))utility[29])(&activated);
  printf("scripting %d, activated %d\n", available, activated);
  call(utility[31]);
  release("AEGP Utility Suite", 13);
  call(acquire("PF AE Adv App Suite", 2)[5]);
  release("PF AE Adv App Suite", 2);
}

static void use_blocks(void) {
  typedef unsigned char (*IsEqual)(const char*, const char*);
  char* block = NULL;
  char* moved = NULL;
  ((int32_t(*)(size_t, char**))basic[3])(8, &block);
  memcpy(block, "content", 8);
  ((int32_t(*)(char*, size_t, char**))basic[5])(block, 1000000, &moved);
  printf("%s, equal %d and %d\n", moved, ((IsEqual)basic[2])("one", "one"),
         ((IsEqual)basic[2])("one", "other"));
  ((int32_t(*)(char*))basic[4])(moved);
}

static void use_memory(void) {
  Table memory = acquire("AEGP Memory Suite", 1);
  void* handle = NULL;
  void* start = NULL;
  uint32_t size = 0;
  int32_t count = 0;
  int32_t total = 0;
  ((int32_t(*)(int32_t, const char*, uint32_t, int32_t, void**))memory[0])(me, "what", 3, 0,
                                                                           &handle);
  memcpy(*(char**)handle, "ab", 3);
  ((int32_t(*)(const char*, uint32_t, void*))memory[5])("what", 12, handle);
  ((int32_t(*)(void*, uint32_t*))memory[4])(handle, &size);
  ((int32_t(*)(int32_t, int32_t*, int32_t*))memory[7])(me, &count, &total);
  ((int32_t(*)(void*, void**))memory[2])(handle, &start);
  ((char*)start)[11] = 'x';
  printf("%s in %u bytes, %d handle of %d\n", (char*)start, size, count, total);
  ((int32_t(*)(void*))memory[3])(handle);
  ((int32_t(*)(void*))memory[1])(handle);
  release("AEGP Memory Suite", 1);
}

static void use_project(void) {
  Table projects = acquire("AEGP Proj Suite", 9);
  Table memory = acquire("AEGP Memory Suite", 1);
  int32_t count = 0;
  void* project = NULL;
  void* path = NULL;
  void* text = NULL;
  uint16_t copy[256] = {0};
  unsigned char dirty = 7;
  ((int32_t(*)(int32_t*))projects[0])(&count);
  ((int32_t(*)(int32_t, void**))projects[1])(0, &project);
  ((int32_t(*)(void*, void**))projects[3])(project, &path);
  ((int32_t(*)(void*, void**))memory[2])(path, &text);
  for (int i = 0; i < 255 && ((uint16_t*)text)[i] != 0; ++i) copy[i] = ((uint16_t*)text)[i];
  ((int32_t(*)(void*))memory[3])(path);
  ((int32_t(*)(void*))memory[1])(path);
  ((int32_t(*)(void*, unsigned char*))projects[8])(project, &dirty);
  /* The host writes the whole of a name's buffer. */
  char name[64];
  memset(name, 'x', sizeof name);
  ((int32_t(*)(void*, char*))projects[2])(project, name);
  printf("%d project, %s until %c%c, dirty %d\n", count, name, name[47] + '0', name[48], dirty);
  ((int32_t(*)(void**))projects[10])(&project);
  printf("opened again: %d\n", ((int32_t(*)(const uint16_t*, void**))projects[11])(copy, &project));
  release("AEGP Memory Suite", 1);
  release("AEGP Proj Suite", 9);
}

/* The versions differ in their first function, and in where the others stand. */
static void use_preferences_of(int32_t version) {
  typedef int32_t (*SetString)(void*, const char*, const char*, const char*);
  typedef int32_t (*GetString)(void*, const char*, const char*, const char*, uint32_t, char*,
                               uint32_t*);
  const int set = version == 3 ? 13 : 15;
  const int remove = version == 3 ? 16 : 20;
  Table table = acquire("AEGP Persistent Data Suite", version);
  void* blob = NULL;
  char text[32] = "";
  char missing[32] = "";
  uint32_t size = 0;
  int32_t number = 0;
  int32_t half = 0;
  double fraction = 0;
  int32_t sections = 0;
  int32_t keys = 0;
  unsigned char exists = 7;
  if (version == 3) ((int32_t(*)(void**))table[0])(&blob);
  if (version == 4) ((int32_t(*)(int32_t, void**))table[0])(1, &blob);
  ((SetString)table[set])(blob, "Section", "key", "value");
  ((int32_t(*)(void*, const char*, const char*, int32_t))table[set + 1])(blob, "Section", "n", 42);
  ((int32_t(*)(void*, const char*, const char*, double))table[set + 2])(blob, "Other", "f", 0.5);
  if (((GetString)table[8])(blob, "Section", "key", "default", 5, text, &size) == 0) {
    puts("five bytes hold \"value\" and its end");
  }
  ((GetString)table[8])(blob, "Section", "other", "fallback", sizeof missing, missing, &size);
  ((GetString)table[8])(blob, "Section", "key", "default", sizeof text, text, &size);
  ((int32_t(*)(void*, const char*, const char*, int32_t, int32_t*))table[9])(blob, "Section",
                                                                             "half", 7, &half);
  ((int32_t(*)(void*, const char*, const char*, int32_t, int32_t*))table[9])(blob, "Section", "n",
                                                                             1, &number);
  ((int32_t(*)(void*, const char*, const char*, double, double*))table[10])(blob, "Other", "f", 1,
                                                                            &fraction);
  ((int32_t(*)(void*, int32_t*))table[1])(blob, &sections);
  ((int32_t(*)(void*, const char*, int32_t*))table[4])(blob, "Section", &keys);
  ((int32_t(*)(void*, const char*, const char*))table[remove])(blob, "Other", "f");
  ((int32_t(*)(void*, const char*, const char*, unsigned char*))table[3])(blob, "Other", "f",
                                                                          &exists);
  printf("%s, %u bytes, %s, %d, %d, %g, %d sections, %d keys, %d\n", text, size, missing, number,
         half, fraction, sections, keys, exists);
  release("AEGP Persistent Data Suite", version);
}

static void use_preferences(void) {
  use_preferences_of(3);
  use_preferences_of(4);
}

static void use_commands(void) {
  typedef int32_t (*Act)(int32_t);
  Table commands = acquire("AEGP Command Suite", 1);
  int32_t other = 0;
  ((Act)commands[7])(command);
  ((int32_t(*)(int32_t*))commands[0])(&other);
  ((int32_t(*)(int32_t, const char*, char, int32_t))commands[1])(other, "Gone", 7, -2);
  ((Act)commands[2])(other);
  ((int32_t(*)(int32_t, const char*))commands[3])(command, "Renamed");
  ((int32_t(*)(int32_t, unsigned char))commands[6])(command, 1);
  release("AEGP Command Suite", 1);
}

static int32_t idle(void* global, void* refcon, int32_t* max_sleep) {
  static void (*const ticks[])(void) = {
      call_what_is_not_supplied, use_windows, use_project, use_blocks, use_memory,
      use_preferences,           use_commands};
  static unsigned int tick = 0;
  (void)global, (void)refcon, (void)max_sleep;
  if (tick < sizeof ticks / sizeof ticks[0]) ticks[tick++]();
  return 0;
}

static int32_t update_menu(void* global, void* refcon, char window) {
  (void)global, (void)refcon, (void)window;
  static int drawn = 0;
  Table commands = acquire("AEGP Command Suite", 1);
  ((int32_t(*)(int32_t))commands[4])(command);
  if (++drawn == 2) ((int32_t(*)(int32_t))commands[5])(command);
  release("AEGP Command Suite", 1);
  return 0;
}

static int32_t pick(void* global, const char* refcon, int32_t picked, uint32_t priority,
                    unsigned char already_handled, unsigned char* handled) {
  (void)global;
  if (picked == 0 && already_handled) puts("nobody picked what is handled");
  if (picked != command) return 0;
  printf("%s, priority %u, handled %d\n", refcon, priority, already_handled);
  *handled = 1;
  return 0;
}

static int32_t death(void* global, void* refcon) {
  (void)global, (void)refcon;
  puts("goodbye");
  return 0;
}

int32_t EntryPointFunc(Table basic_suite, int32_t major, int32_t minor, int32_t id, void** global);

__attribute__((visibility("default"))) int32_t EntryPointFunc(Table basic_suite, int32_t major,
                                                              int32_t minor, int32_t id,
                                                              void** global) {
  (void)major, (void)minor, (void)global;
  basic = basic_suite;
  me = id;
  Table hooks = acquire("AEGP Register Suite", 6);
  Table commands = acquire("AEGP Command Suite", 1);
  ((int32_t(*)(int32_t, int32_t(*)(void*, void*, int32_t*), void*))hooks[8])(id, idle, NULL);
  ((int32_t(*)(int32_t, int32_t(*)(void*, void*), void*))hooks[2])(id, death, NULL);
  ((int32_t(*)(int32_t, int32_t(*)(void*, void*, char), void*))hooks[1])(id, update_menu, NULL);
  ((int32_t(*)(int32_t*))commands[0])(&command);
  typedef int32_t (*CommandHook)(void*, const char*, int32_t, uint32_t, unsigned char,
                                 unsigned char*);
  typedef int32_t (*RegisterCommandHook)(int32_t, uint32_t, int32_t, CommandHook, const char*);
  const RegisterCommandHook registerCommandHook = (RegisterCommandHook)hooks[0];
  registerCommandHook(id, 2, 0, pick, "picked last");
  registerCommandHook(id, 1, 0, pick, "picked first");
  registerCommandHook(id, 2, 1, pick, "picked for another command");
  ((int32_t(*)(int32_t, const char*, char, int32_t))commands[1])(command, "Mine", 7, -2);
  release("AEGP Command Suite", 1);
  release("AEGP Register Suite", 6);
  return 0;
}
