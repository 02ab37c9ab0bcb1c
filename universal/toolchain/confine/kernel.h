#pragma once

#include <csignal>
#include <cstddef>
#include <cstdint>
#include <sys/syscall.h>
#include <sys/types.h>
#include <type_traits>

/// System calls without the C library.
///
/// Before main that library asks the processor some fifty questions about itself (CPUID). Each of
/// them leaves a virtual machine and comes back, which adds up to half the time that this program
/// takes. So it starts by itself; nothing here may use the library's functions, only its constants
/// and types.
namespace tolvane::confine::Kernel {

/// What a call answers: a negative one is an error number of errno.h.
using Answer = long;

inline Answer callWithWords(
    long number, long first, long second, long third, long fourth, long fifth) {
#if defined(__x86_64__)
  register long fourthRegister __asm__("r10") = fourth;
  register long fifthRegister __asm__("r8") = fifth;
  __asm__ volatile("syscall"
                   : "+a"(number)
                   : "D"(first), "S"(second), "d"(third), "r"(fourthRegister), "r"(fifthRegister)
                   : "rcx", "r11", "memory");
  return number;
#elif defined(__aarch64__)
  register long answer __asm__("x0") = first;
  register long secondRegister __asm__("x1") = second;
  register long thirdRegister __asm__("x2") = third;
  register long fourthRegister __asm__("x3") = fourth;
  register long fifthRegister __asm__("x4") = fifth;
  register long numberRegister __asm__("x8") = number;
  __asm__ volatile("svc #0"
                   : "+r"(answer)
                   : "r"(secondRegister),
                     "r"(thirdRegister),
                     "r"(fourthRegister),
                     "r"(fifthRegister),
                     "r"(numberRegister)
                   : "memory");
  return answer;
#else
#error "How this processor enters the kernel is not known here."
#endif
}

template <typename Argument>
long word(Argument argument) {
  if constexpr (std::is_null_pointer_v<Argument>) {
    return 0;
  } else if constexpr (std::is_pointer_v<Argument>) {
    return reinterpret_cast<long>(argument);
  } else {
    return static_cast<long>(argument);
  }
}

/// @param number one of SYS_*.
/// @param arguments up to five numbers and pointers.
template <typename... Arguments>
Answer call(long number, Arguments... arguments) {
  static_assert(sizeof...(arguments) <= 5);
  const long words[5] = {word(arguments)...};
  return callWithWords(number, words[0], words[1], words[2], words[3], words[4]);
}

/// A set of signals, as the kernel keeps it.
using Signals = std::uint64_t;

constexpr Signals setOf(int signal) {
  return Signals{1} << (signal - 1);
}

/// @param handler SIG_DFL or SIG_IGN; others would need a way back.
inline Answer handle(int signal, void (*handler)(int)) {
  struct Action {
    void (*handler)(int);
    unsigned long flags;
    void (*wayBack)();
    Signals blocked;
  };
  const Action action = {handler, 0, nullptr, 0};
  return call(SYS_rt_sigaction, signal, &action, nullptr, sizeof(Signals));
}

/// @param before receives the set blocked so far; may be null.
inline Answer block(Signals signals, Signals* before) {
  return call(SYS_rt_sigprocmask, SIG_SETMASK, &signals, before, sizeof(Signals));
}

inline pid_t parent() {
  return static_cast<pid_t>(call(SYS_getppid));
}

[[noreturn]] inline void exit(int status) {
  for (;;) {
    call(SYS_exit_group, status);
  }
}

}  // namespace tolvane::confine::Kernel
