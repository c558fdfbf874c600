#pragma once

// Put in front of every source of a mutated tree (scripts/mutate): each planted fault asks here whether it is the one
// that CP_MUTANT names. With CP_MUTANTS_REACHED naming a file of zeros, a byte a fault, those that are asked are noted.

#include <cstdlib>
#include <type_traits>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

namespace cp_mutant {

inline const int kActive = [] {
  const char* text = std::getenv("CP_MUTANT");
  return text != nullptr ? std::atoi(text) : 0;
}();

inline volatile char* const kReached = []() -> char* {
  const char* path = std::getenv("CP_MUTANTS_REACHED");
  const int file = path != nullptr ? open(path, O_RDWR) : -1;
  struct stat info;
  if (file < 0 || fstat(file, &info) != 0) return nullptr;
  return static_cast<char*>(mmap(nullptr, static_cast<std::size_t>(info.st_size), PROT_WRITE, MAP_SHARED, file, 0));
}();

// What is evaluated while compiling stays as it is.
template <int N>
constexpr bool on() {
  if (N == 0 || std::is_constant_evaluated()) return false;
  if (kReached != nullptr) kReached[N] = 1;
  return kActive == N;
}

/// The condition, turned. With `a && b` as turned(turned(a) && turned(b)) it is `a || b`, and the other way round.
template <int N, class T>
constexpr bool turned(T&& condition) {
  return static_cast<bool>(condition) != on<N>();
}

/// A literal, one more or one less.
template <int More, int Less, class T>
constexpr T number(T value) {
  if (on<More>()) return static_cast<T>(value + 1);
  if (on<Less>()) return static_cast<T>(value - 1);
  return value;
}

/// Comparisons, turned or with the bound moved by one.
#define CP_COMPARISON(name, op)                           \
  template <int Turn, int Bound, class A, class B>        \
  constexpr bool name(const A& a, const B& b) {           \
    if (on<Turn>()) return !static_cast<bool>(a op b);    \
    if constexpr (Bound != 0) {                           \
      if (on<Bound>()) return !static_cast<bool>(b op a); \
    }                                                     \
    return static_cast<bool>(a op b);                     \
  }
CP_COMPARISON(less, <)
CP_COMPARISON(lessOrEqual, <=)
CP_COMPARISON(greater, >)
CP_COMPARISON(greaterOrEqual, >=)
CP_COMPARISON(equal, ==)
CP_COMPARISON(notEqual, !=)

#define CP_ARITHMETIC(name, op, other)                            \
  template <int N, class A, class B>                              \
  constexpr auto name(const A& a, const B& b)->decltype(a op b) { \
    if (on<N>()) return static_cast<decltype(a op b)>(a other b); \
    return a op b;                                                \
  }
CP_ARITHMETIC(plus, +, -)
CP_ARITHMETIC(times, *, /)
CP_ARITHMETIC(divided, /, *)
CP_ARITHMETIC(modulo, %, /)
CP_ARITHMETIC(shiftedLeft, <<, >>)
CP_ARITHMETIC(shiftedRight, >>, <<)
CP_ARITHMETIC(bitAnd, &, |)
CP_ARITHMETIC(bitOr, |, &)
CP_ARITHMETIC(bitXor, ^, &)

/// The distance of two pointers, which have no sum, becomes one longer.
template <int N, class A, class B>
constexpr auto minus(const A& a, const B& b) -> decltype(a - b) {
  if constexpr (requires { static_cast<decltype(a - b)>(a + b); }) {
    if (on<N>()) return static_cast<decltype(a - b)>(a + b);
  } else {
    if (on<N>()) return a - b + 1;
  }
  return a - b;
}

/// What has no counterpart is left undone.
#define CP_ASSIGNMENT(name, op, other)              \
  template <int N, class A, class B>                \
  constexpr decltype(auto) name(A& a, const B& b) { \
    if constexpr (requires { a other b; }) {        \
      if (on<N>()) return a other b;                \
    } else {                                        \
      if (on<N>()) return a;                        \
    }                                               \
    return a op b;                                  \
  }
CP_ASSIGNMENT(add, +=, -=)
CP_ASSIGNMENT(subtract, -=, +=)
CP_ASSIGNMENT(multiply, *=, /=)
CP_ASSIGNMENT(divide, /=, *=)
CP_ASSIGNMENT(reduce, %=, /=)
CP_ASSIGNMENT(unite, |=, &=)
CP_ASSIGNMENT(intersect, &=, |=)

/// The order of neighbouring statements: the fault Swaps[k] exchanges numbers k and k + 1; 0 is no fault.
template <int... Swaps>
class Order {
 public:
  constexpr bool more() const { return at_ <= static_cast<int>(sizeof...(Swaps)); }
  constexpr int next() {
    int k = 0, chosen = at_;
    (exchange(k++, on<Swaps>(), chosen), ...);
    ++at_;
    return chosen;
  }

 private:
  constexpr void exchange(int k, bool active, int& chosen) const {
    if (active && (at_ == k || at_ == k + 1)) chosen = at_ == k ? k + 1 : k;
  }
  int at_ = 0;
};

}  // namespace cp_mutant
