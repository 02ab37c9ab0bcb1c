// Where the kernel enters the program, and the functions that the compiler takes for granted.

#include <cstddef>

#if !defined(__clang__)
// Goes with -fno-builtin, which does not stop this compiler from seeing memcpy in a loop.
#pragma GCC optimize("no-tree-loop-distribute-patterns")
#endif

// The kernel leaves the number of arguments, the arguments and the environment on the stack.
#if defined(__x86_64__)
__asm__(
    ".globl _start\n"
    "_start:\n"
    "  xor %ebp, %ebp\n"
    "  mov (%rsp), %rdi\n"
    "  lea 8(%rsp), %rsi\n"
    "  lea 8(%rsi,%rdi,8), %rdx\n"
    "  and $-16, %rsp\n"
    "  call startHere\n");
#elif defined(__aarch64__)
__asm__(
    ".globl _start\n"
    "_start:\n"
    "  mov x29, #0\n"
    "  ldr x0, [sp]\n"
    "  add x1, sp, #8\n"
    "  add x2, x1, x0, lsl #3\n"
    "  add x2, x2, #8\n"
    "  bl startHere\n");
#endif

extern "C" {

void* memcpy(void* to, const void* from, std::size_t size) {
  for (std::size_t index = 0; index < size; ++index) {
    static_cast<char*>(to)[index] = static_cast<const char*>(from)[index];
  }
  return to;
}

void* memset(void* to, int value, std::size_t size) {
  for (std::size_t index = 0; index < size; ++index) {
    static_cast<char*>(to)[index] = static_cast<char>(value);
  }
  return to;
}

int memcmp(const void* left, const void* right, std::size_t size) {
  const auto* one = static_cast<const unsigned char*>(left);
  const auto* other = static_cast<const unsigned char*>(right);
  for (std::size_t index = 0; index < size; ++index) {
    if (one[index] != other[index]) {
      return one[index] < other[index] ? -1 : 1;
    }
  }
  return 0;
}

std::size_t strlen(const char* text) {
  std::size_t length = 0;
  while (text[length] != '\0') {
    ++length;
  }
  return length;
}

}  // extern "C"
