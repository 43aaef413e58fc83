/* A plug-in that reaches the host by positions alone: it shares no header with the host that it is
   played with, so that a table with an entry too many or too few shows. It prints what it gets. */

#include <stdint.h>
#include <stdio.h>

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
  call_the_rest("AEGP Command Suite", 1, 8, "**..*..*");
  call_the_rest("AEGP Utility Suite", 7, 25, "*........................");
  call_the_rest("AEGP Utility Suite", 13, 33, "*..............................*.");
  call_the_rest("AEGP Proj Suite", 9, 14, "**.*....*.**..");
  call_the_rest("AEGP Memory Suite", 1, 8, ".***....");
  call_the_rest("PF AE Adv App Suite", 2, 11, ".....*.....");
  call_the_rest("AEGP Persistent Data Suite", 3, 18, "*............*....");
  call_the_rest("AEGP Persistent Data Suite", 4, 22, "........*.............");
  if (call(basic[6]) != 516) puts("the basic suite answers");
}

static void use_windows(void) {
  Table utility = acquire("AEGP Utility Suite", 7);
  ((int32_t(*)(int32_t, const char*))utility[0])(me, "by position");
  release("AEGP Utility Suite", 7);
  utility = acquire("AEGP Utility Suite", 13);
  ((int32_t(*)(int32_t, const char*))utility[0])(me, "by position too");
  call(utility[31]);
  release("AEGP Utility Suite", 13);
  call(acquire("PF AE Adv App Suite", 2)[5]);
  release("PF AE Adv App Suite", 2);
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
  printf("%d project, dirty %d\n", count, dirty);
  ((int32_t(*)(void**))projects[10])(&project);
  printf("opened again: %d\n", ((int32_t(*)(const uint16_t*, void**))projects[11])(copy, &project));
  release("AEGP Memory Suite", 1);
  release("AEGP Proj Suite", 9);
}

static void use_preferences(void) {
  typedef int32_t (*SetString)(void*, const char*, const char*, const char*);
  typedef int32_t (*GetString)(void*, const char*, const char*, const char*, uint32_t, char*,
                               uint32_t*);
  Table writer = acquire("AEGP Persistent Data Suite", 3);
  Table reader = acquire("AEGP Persistent Data Suite", 4);
  void* blob = NULL;
  char text[32] = "";
  uint32_t size = 0;
  ((int32_t(*)(void**))writer[0])(&blob);
  ((SetString)writer[13])(blob, "Section", "key", "value");
  ((GetString)reader[8])(blob, "Section", "key", "default", sizeof text, text, &size);
  printf("preference %s, %u bytes\n", text, size);
  release("AEGP Persistent Data Suite", 4);
  release("AEGP Persistent Data Suite", 3);
}

static void use_commands(void) {
  ((int32_t(*)(int32_t))acquire("AEGP Command Suite", 1)[7])(command);
  release("AEGP Command Suite", 1);
}

static int32_t idle(void* global, void* refcon, int32_t* max_sleep) {
  static void (*const ticks[])(void) = {call_what_is_not_supplied, use_windows, use_project,
                                        use_preferences, use_commands};
  static unsigned int tick = 0;
  (void)global, (void)refcon, (void)max_sleep;
  if (tick < sizeof ticks / sizeof ticks[0]) ticks[tick++]();
  return 0;
}

static int32_t update_menu(void* global, void* refcon, char window) {
  (void)global, (void)refcon, (void)window;
  ((int32_t(*)(int32_t))acquire("AEGP Command Suite", 1)[4])(command);
  release("AEGP Command Suite", 1);
  return 0;
}

static int32_t pick(void* global, void* refcon, int32_t picked, uint32_t priority,
                    unsigned char already_handled, unsigned char* handled) {
  (void)global, (void)refcon, (void)already_handled;
  if (picked != command) return 0;
  printf("picked, priority %u\n", priority);
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
  ((int32_t(*)(int32_t, uint32_t, int32_t,
               int32_t(*)(void*, void*, int32_t, uint32_t, unsigned char, unsigned char*),
               void*))hooks[0])(id, 1, 0, pick, NULL);
  ((int32_t(*)(int32_t*))commands[0])(&command);
  ((int32_t(*)(int32_t, const char*, char, int32_t))commands[1])(command, "Mine", 7, -2);
  release("AEGP Command Suite", 1);
  release("AEGP Register Suite", 6);
  return 0;
}
