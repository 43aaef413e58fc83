#include "FlightRecord.h"

#include <fmt/format.h>
#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <new>
#include <stdexcept>

namespace host {

SharedFlightRecord ShareFlightRecord() {
  void* memory = mmap(nullptr, sizeof(FlightRecord), PROT_READ | PROT_WRITE,
                      MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::runtime_error("can't get shared memory");
  return SharedFlightRecord(new (memory) FlightRecord);
}

void UnmapFlightRecord::operator()(FlightRecord* record) const {
  munmap(record, sizeof(FlightRecord));
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

std::string FlightRecord::where() const {
  return fmt::format("tick {}, host call {}, step {}", tick.load(),
                     hostCall[0] ? hostCall.data() : "none", step.data());
}

EventHead HeadForThread(const FlightRecord& record) {
  EventHead head;
  head.step = record.stepNumber;
  head.tick = record.tick;
  head.time = record.time;
  head.actor = Actor::plugIn;
  head.hook = record.hook;
  return head;
}

EventHead HeadOf(const FlightRecord& record) {
  EventHead head = HeadForThread(record);
  head.place = record.step.data();
  if (!record.inHostCall) return head;
  const std::string_view call = record.hostCall.data();
  head.call.function = call.substr(0, call.find('('));
  return head;
}

}  // namespace host
