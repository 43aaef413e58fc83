#include "FlightRecord.h"

#include <fmt/format.h>
#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <new>
#include <stdexcept>

namespace host {

std::shared_ptr<FlightRecord> ShareFlightRecord() {
  void* memory = mmap(nullptr, sizeof(FlightRecord), PROT_READ | PROT_WRITE,
                      MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::runtime_error("can't get shared memory");
  return {new (memory) FlightRecord, [](FlightRecord* record) { munmap(record, sizeof *record); }};
}

void KeepFromForks(FlightRecord& record) {
  static FlightRecord* kept = nullptr;
  kept = &record;
  pthread_atfork(nullptr, nullptr, [] {
    // In the place of the shared memory.
    void* const own = mmap(kept, sizeof(FlightRecord), PROT_READ | PROT_WRITE,
                           MAP_FIXED | MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (own == MAP_FAILED) _exit(EXIT_FAILURE);
    (new (own) FlightRecord)->isOfFork = true;
  });
}

std::string FlightRecord::inWhat() const {
  const char* const running = hook;
  return fmt::format("the {}", *running ? running : "host itself");
}

std::string FlightRecord::where() const {
  return fmt::format("tick {}, host call {}, step {}", tick.load(),
                     hostCall[0] ? hostCall.data() : "none", step.data());
}

EventHead HeadOf(const FlightRecord& record) {
  EventHead head;
  head.step = record.stepNumber;
  head.tick = record.tick;
  head.time = record.time;
  head.actor = Actor::plugIn;
  head.hook = record.hook;
  return head;
}

}  // namespace host
