/* A host that looks at the machine, at its own process and at its threads. Calls every sampling export once and gives
 * back what it got. Usage: sampling [PID...], to look at other processes too. */
#include <inttypes.h>
#include <pthread.h>
#include <ravo/ravo.h>
#include <stdio.h>
#include <stdlib.h>

#if defined(_WIN32)
#include <process.h>
#else
#include <unistd.h>
#endif

#define MAX_FRAMES 32

static void RAVO_CALL on_info(const char* text) {
  printf("info: %s\n", text);
}

static void RAVO_CALL on_error(const char* text) {
  printf("error: %s\n", text);
}

/* Prints a text of the library and gives it back. */
static void show_text(const char* label, char* text) {
  printf("%s: %s\n", label, text);
  releaseCppStringFFI(text);
}

static void show_machine(void) {
  const SystemCpuTime time = getSystemCpuTime();
  printf("processors busy for %" PRIu64 " ms, idle for %" PRIu64 " ms\n", (time.total - time.idle) / 10000,
         time.idle / 10000);
  show_text("system", getOsVersionString());
  show_text("manufacturer", getManufacturer());
  show_text("model", getModel());
}

static void show_temperature(void) {
  if (SMCInit() != 0) return;
  const TemperatureInfo temperature = getTemperature();
  printf("temperature: %" PRIu64 " %" PRIu64 "\n", temperature.reserved[0], temperature.reserved[1]);
  SMCUnInit();
}

static void show_process(uint64_t id) {
  const ProcessPerformance load = getProcessPerformance(id);
  printf("process %" PRIu64 ": exists %d, status %" PRId64 ", %" PRIu64 " ns, %" PRIu64 " bytes\n", id,
         isProcessExist(id), load.status, load.cpuTime, load.memoryBytes);
}

/* Returns the id of the last one, or 0. */
static uint64_t show_threads(void) {
  FfiList list = getThreadPerformance();
  const ThreadBasicPerformance* threads = (const ThreadBasicPerformance*)list.data;
  for (int32_t i = 0; i < list.count; ++i) {
    printf("%s: user %" PRIu64 " ns, kernel %" PRIu64 " ns\n", threads[i].name, threads[i].userTime,
           threads[i].kernelTime);
  }
  const uint64_t last = list.count > 0 ? threads[list.count - 1].threadId : 0;
  releeaseThreadBasicPerformanceListFFI(&list);
  return last;
}

static void show_threads_with_stacks(void) {
  const char* const stop_modules[] = {"libc.so.6", "kernel32.dll"};
  FfiList list = getThreadPerformanceWithStackInfo(false, MAX_FRAMES, stop_modules, 2);
  const ThreadExtendPerformance* threads = (const ThreadExtendPerformance*)list.data;
  for (int32_t i = 0; i < list.count; ++i) {
    printf("%s\n", threads[i].name);
    for (int32_t frame = 0; frame < threads[i].stackCount; ++frame) printf("    %s\n", threads[i].stack[frame]);
  }
  releeaseThreadExtendPerformanceListFFI(&list);
}

static void show_stack(uint64_t thread) {
  if (!symInitializeCurrentProcess()) printf("no symbols\n");
  FfiList list = getThreadStack(thread, MAX_FRAMES, NULL, 0);
  char** frames = (char**)list.data;
  printf("thread %" PRIu64 ": %d frames\n", thread, (int)list.count);
  for (int32_t i = 0; i < list.count; ++i) printf("    %s\n", frames[i]);
  releaseStringArrayFFI(&list);
  symCleanupCurrentProcess();
}

static pthread_mutex_t gate = PTHREAD_MUTEX_INITIALIZER;

/* A thread to look at: it waits until main opens the gate. */
static void* wait_at_gate(void* unused) {
  pthread_mutex_lock(&gate);
  pthread_mutex_unlock(&gate);
  return unused;
}

int main(int argc, char** argv) {
  setRustLogger(on_info, NULL, on_error);
  show_machine();
  show_temperature();
  show_process((uint64_t)getpid());
  for (int i = 1; i < argc; ++i) show_process(strtoull(argv[i], NULL, 10));

  pthread_t waiter;
  pthread_mutex_lock(&gate);
  if (pthread_create(&waiter, NULL, wait_at_gate, NULL) != 0) return 1;
  const uint64_t last = show_threads();
  show_threads_with_stacks();
  show_stack(last);
  pthread_mutex_unlock(&gate);
  pthread_join(waiter, NULL);
  return last != 0 ? 0 : 1;
}
