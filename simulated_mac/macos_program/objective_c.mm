// The functions of macOS's libobjc that compilers call (Clang, "Objective-C Automatic Reference Counting",
// runtime support; <objc/message.h>), on GCC's runtime. No object is a tagged pointer there.
#include "simulated_mac/macos_program/objective_c.h"

#include <Block_private.h>
#import <Foundation/Foundation.h>
#include <objc/message.h>
#include <objc/runtime.h>

#include "simulated_mac/macos_program/imports.h"

// A message's method is looked up with all registers kept that may hold arguments, and jumped to. A message
// to nil has the result 0, whatever its type. objc_msgSendSuper2 gets a pointer to the receiver and the class
// whose superclass counts in the receiver's place.
extern "C" IMP findMethod(id receiver, SEL selector) { return objc_msg_lookup(receiver, selector); }
extern "C" IMP findSuperMethod(const objc_super* super, SEL selector) {
  objc_super above{super->self, class_getSuperclass(super->super_class)};
  return objc_msg_lookup_super(&above, selector);
}
extern "C" void sendMessage();
extern "C" void sendMessageToSuper();
asm(".globl sendMessage, sendMessageToSuper");  // on Arm, clang takes a local symbol's address wrongly

#if defined(__x86_64__)
asm(R"(
.macro keep_arguments_and_call function
  .cfi_startproc
  pushq %rbp
  .cfi_def_cfa_offset 16
  .cfi_offset %rbp, -16
  movq %rsp, %rbp
  .cfi_def_cfa_register %rbp
  subq $0xC0, %rsp
  movq %rdi, 0x00(%rsp)
  movq %rsi, 0x08(%rsp)
  movq %rdx, 0x10(%rsp)
  movq %rcx, 0x18(%rsp)
  movq %r8, 0x20(%rsp)
  movq %r9, 0x28(%rsp)
  movq %rax, 0x30(%rsp)
  movaps %xmm0, 0x40(%rsp)
  movaps %xmm1, 0x50(%rsp)
  movaps %xmm2, 0x60(%rsp)
  movaps %xmm3, 0x70(%rsp)
  movaps %xmm4, 0x80(%rsp)
  movaps %xmm5, 0x90(%rsp)
  movaps %xmm6, 0xA0(%rsp)
  movaps %xmm7, 0xB0(%rsp)
  call \function
  movq %rax, %r11
  movq 0x00(%rsp), %rdi
  movq 0x08(%rsp), %rsi
  movq 0x10(%rsp), %rdx
  movq 0x18(%rsp), %rcx
  movq 0x20(%rsp), %r8
  movq 0x28(%rsp), %r9
  movq 0x30(%rsp), %rax
  movaps 0x40(%rsp), %xmm0
  movaps 0x50(%rsp), %xmm1
  movaps 0x60(%rsp), %xmm2
  movaps 0x70(%rsp), %xmm3
  movaps 0x80(%rsp), %xmm4
  movaps 0x90(%rsp), %xmm5
  movaps 0xA0(%rsp), %xmm6
  movaps 0xB0(%rsp), %xmm7
  leave
  .cfi_endproc
.endm
sendMessage:
  testq %rdi, %rdi
  je 1f
  keep_arguments_and_call findMethod
  jmp *%r11
1:
  xorl %eax, %eax
  xorl %edx, %edx
  xorps %xmm0, %xmm0
  xorps %xmm1, %xmm1
  ret
sendMessageToSuper:
  keep_arguments_and_call findSuperMethod
  movq (%rdi), %rdi
  jmp *%r11
)");
#elif defined(__aarch64__)
asm(R"(
.macro keep_arguments_and_call function
  .cfi_startproc
  stp x29, x30, [sp, #-0xE0]!
  .cfi_def_cfa_offset 0xE0
  .cfi_offset x29, -0xE0
  .cfi_offset x30, -0xD8
  mov x29, sp
  stp x0, x1, [sp, #0x10]
  stp x2, x3, [sp, #0x20]
  stp x4, x5, [sp, #0x30]
  stp x6, x7, [sp, #0x40]
  str x8, [sp, #0x50]
  stp q0, q1, [sp, #0x60]
  stp q2, q3, [sp, #0x80]
  stp q4, q5, [sp, #0xA0]
  stp q6, q7, [sp, #0xC0]
  bl \function
  mov x16, x0
  ldp x0, x1, [sp, #0x10]
  ldp x2, x3, [sp, #0x20]
  ldp x4, x5, [sp, #0x30]
  ldp x6, x7, [sp, #0x40]
  ldr x8, [sp, #0x50]
  ldp q0, q1, [sp, #0x60]
  ldp q2, q3, [sp, #0x80]
  ldp q4, q5, [sp, #0xA0]
  ldp q6, q7, [sp, #0xC0]
  ldp x29, x30, [sp], #0xE0
  .cfi_endproc
.endm
sendMessage:
  cbz x0, 1f
  keep_arguments_and_call findMethod
  br x16
1:
  mov x1, #0
  movi v0.2d, #0
  movi v1.2d, #0
  ret
sendMessageToSuper:
  keep_arguments_and_call findSuperMethod
  ldr x0, [x0]
  br x16
)");
#endif

namespace wendle::macho {
namespace {
id retain(id object) { return [object retain]; }
void release(id object) { [object release]; }
id autorelease(id object) { return [object autorelease]; }
id retainAutorelease(id object) { return [[object retain] autorelease]; }
id retainBlock(id block) { return [block copy]; }
id allocate(Class type) { return [type alloc]; }
id allocateAndInit(Class type) { return [[type alloc] init]; }
void* pushPool() { return [[NSAutoreleasePool alloc] init]; }
void popPool(void* pool) { [static_cast<NSAutoreleasePool*>(pool) release]; }

void refuseMutation(id collection) {
  refuse(std::string("a collection was changed while it was enumerated: ") +
         [[collection description] UTF8String]);
}

const char emptyCache = 0;  // part of each class of macOS's runtime
}  // namespace

const void* findClass(const std::string& import) {
  for (const std::string prefix : {"_OBJC_CLASS_$_", "_OBJC_METACLASS_$_"}) {
    if (!import.starts_with(prefix)) continue;
    Class type = objc_getClass(import.substr(prefix.size()).c_str());
    const bool isMeta = prefix[6] == 'M';
    return static_cast<void*>(isMeta && type != nil ? object_getClass(type) : type);
  }
  return nullptr;
}

AutoreleasePool::AutoreleasePool() : pool_(pushPool()) {}
AutoreleasePool::~AutoreleasePool() { popPool(pool_); }

Imports objectiveCImports() {
  static const Import imports[] = {
      provide("_objc_msgSend", sendMessage),
      provide("_objc_msgSendSuper2", sendMessageToSuper),
      provide("_objc_retain", retain),
      provide("_objc_retainAutoreleasedReturnValue", retain),
      provide("_objc_release", release),
      provide("_objc_autoreleaseReturnValue", autorelease),
      provide("_objc_retainAutorelease", retainAutorelease),
      provide("_objc_retainAutoreleaseReturnValue", retainAutorelease),
      provide("_objc_retainBlock", retainBlock),
      provide("_objc_lookUpClass", objc_lookUpClass),
      provide("_objc_alloc", allocate),
      provide("_objc_alloc_init", allocateAndInit),
      provide("_objc_autoreleasePoolPush", pushPool),
      provide("_objc_autoreleasePoolPop", popPool),
      provide("_objc_enumerationMutation", refuseMutation),
      {"__objc_empty_cache", &emptyCache},
  };
  return imports;
}
}  // namespace wendle::macho
