// Functions with a variable number of arguments. On Intel, macOS passes these as Linux does. On Arm it passes
// all of them on the stack, eight bytes each, and its va_list is a pointer to them (Apple, "Writing ARM64
// code for Apple platforms"), where Linux would look into registers first.
#pragma once

#include <cstdarg>
#include <type_traits>
#include <utility>

namespace wendle::macho {
#if defined(__x86_64__)

using DarwinList = std::decay_t<va_list>;
constexpr std::size_t skippedRegisters(std::size_t) { return 0; }
inline void onStackOnly(va_list) {}
inline DarwinList toHostList(DarwinList list) { return list; }

#elif defined(__aarch64__)

using DarwinList = char*;
// Named arguments that fill the eight registers for numbers: behind them a list begins on the stack.
constexpr std::size_t skippedRegisters(std::size_t named) { return 8 - named; }
inline void onStackOnly(va_list& list) { list.__vr_offs = 0; }
inline va_list toHostList(DarwinList list) { return {list, nullptr, nullptr, 0, 0}; }

#endif

template <std::size_t>
using Register = long;

template <auto function, typename Registers>
struct VariadicEntry;
template <typename R, typename... Fixed, R (*function)(va_list, Fixed...), std::size_t... i>
struct VariadicEntry<function, std::index_sequence<i...>> {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wvarargs"  // the last named argument has no name here
  static R call(Fixed... fixed, Register<i>..., ...) {
    va_list list;
    va_start(list, 0);
    onStackOnly(list);
    const R result = function(list, fixed...);
    va_end(list);
    return result;
  }
#pragma GCC diagnostic pop
};

// The entry for a function `R function(va_list, Fixed...)`, which the program calls as `R name(Fixed...,
// ...)`.
template <auto function>
struct Variadic;
template <typename R, typename... Fixed, R (*function)(va_list, Fixed...)>
struct Variadic<function>
    : VariadicEntry<function, std::make_index_sequence<skippedRegisters(sizeof...(Fixed))>> {};
}  // namespace wendle::macho
