// Libraries that the program is not linked to, as it needs them after its window is shown, if at
// all, and linking them takes longer than making the window's panes. Each function of theirs that
// is called (listed by the build, see cmake/LateCalls.cmake) becomes one that jumps to where its
// slot points, whatever its parameters: at first to code that loads the library and fills the slot.
// Ends the program with a message when a library is missing.

#include "platform/Log.h"

#include <dlfcn.h>

#include <cstddef>
#include <cstdlib>
#include <string>

#if defined(__x86_64__)
#define CORVEL_JUMP(index) "\tjmp *.Lslots+8*" #index "(%rip)\n"
#define CORVEL_BIND(index) "\tpushq $" #index "\n\tjmp .Lbind\n"
// The parameters are kept over the call, those in vector registers and their number too.
__asm__(R"(.text
.p2align 4
.Lbind:
    pushq %rdi
    pushq %rsi
    pushq %rdx
    pushq %rcx
    pushq %r8
    pushq %r9
    pushq %rax
    subq $136, %rsp
    movups %xmm0, (%rsp)
    movups %xmm1, 16(%rsp)
    movups %xmm2, 32(%rsp)
    movups %xmm3, 48(%rsp)
    movups %xmm4, 64(%rsp)
    movups %xmm5, 80(%rsp)
    movups %xmm6, 96(%rsp)
    movups %xmm7, 112(%rsp)
    movq 192(%rsp), %rdi
    leaq .Lslots(%rip), %rsi
    call corvel_late_function
    movq %rax, %r11
    movups (%rsp), %xmm0
    movups 16(%rsp), %xmm1
    movups 32(%rsp), %xmm2
    movups 48(%rsp), %xmm3
    movups 64(%rsp), %xmm4
    movups 80(%rsp), %xmm5
    movups 96(%rsp), %xmm6
    movups 112(%rsp), %xmm7
    addq $136, %rsp
    popq %rax
    popq %r9
    popq %r8
    popq %rcx
    popq %rdx
    popq %rsi
    popq %rdi
    addq $8, %rsp
    jmp *%r11
)");
#elif defined(__aarch64__)
#define CORVEL_JUMP(index)          \
    "\tadrp x16, .Lslots+8*" #index \
    "\n"                            \
    "\tldr x16, [x16, :lo12:.Lslots+8*" #index "]\n\tbr x16\n"
#define CORVEL_BIND(index) "\tmov w17, #" #index "\n\tb .Lbind\n"
__asm__(R"(.text
.p2align 4
.Lbind:
    stp x29, x30, [sp, #-224]!
    mov x29, sp
    stp x0, x1, [sp, #16]
    stp x2, x3, [sp, #32]
    stp x4, x5, [sp, #48]
    stp x6, x7, [sp, #64]
    str x8, [sp, #80]
    stp q0, q1, [sp, #96]
    stp q2, q3, [sp, #128]
    stp q4, q5, [sp, #160]
    stp q6, q7, [sp, #192]
    mov w0, w17
    adrp x1, .Lslots
    add x1, x1, :lo12:.Lslots
    bl corvel_late_function
    mov x16, x0
    ldp x0, x1, [sp, #16]
    ldp x2, x3, [sp, #32]
    ldp x4, x5, [sp, #48]
    ldp x6, x7, [sp, #64]
    ldr x8, [sp, #80]
    ldp q0, q1, [sp, #96]
    ldp q2, q3, [sp, #128]
    ldp q4, q5, [sp, #160]
    ldp q6, q7, [sp, #192]
    ldp x29, x30, [sp], #224
    br x16
)");
#else
#error "No jump for this processor: link the program to these libraries instead"
#endif

// The slots, in the order of the list.
__asm__(".pushsection .data.rel,\"aw\"\n\t.p2align 3\n.Lslots:\n\t.popsection\n");
#define CORVEL_LATE_LIBRARY(name)
#define CORVEL_LATE_TYPE(name)
#define CORVEL_LATE_CALL(name, index, library) \
    __asm__(".pushsection .data.rel,\"aw\"\n\t.quad .Lbind" #index "\n\t.popsection\n");
#include CORVEL_LATE_CALLS
#undef CORVEL_LATE_CALL
#undef CORVEL_LATE_TYPE

// A class from which one with functions of its own in the objects is derived: they have the derived
// one's description, which leads to this. It stands for a class without bases.
#define CORVEL_LATE_TYPE(name)                                                         \
    __asm__(".pushsection .data.rel.ro,\"aw\"\n\t.p2align 3\n\t.globl _ZTI" #name      \
            "\n\t.hidden _ZTI" #name "\n\t.type _ZTI" #name ", %object\n_ZTI" #name    \
            ":\n\t.quad _ZTVN10__cxxabiv117__class_type_infoE+16, 1f\n\t.popsection\n" \
            "\t.pushsection .rodata\n1:\t.string \"" #name "\"\n\t.popsection\n");
#define CORVEL_LATE_CALL(name, index, library)                                             \
    __asm__(".text\n\t.p2align 4\n\t.globl " #name "\n\t.hidden " #name "\n\t.type " #name \
            ", %function\n" #name ":\n" CORVEL_JUMP(index) ".Lbind" #index                 \
                                                           ":\n" CORVEL_BIND(index));
#include CORVEL_LATE_CALLS
#undef CORVEL_LATE_CALL
#undef CORVEL_LATE_TYPE
#undef CORVEL_LATE_LIBRARY

namespace corvel {

namespace {

struct Call {
    const char* name;
    std::size_t library;
};

constexpr const char* kLibraries[] = {
#define CORVEL_LATE_TYPE(name)
#define CORVEL_LATE_CALL(name, index, library)
#define CORVEL_LATE_LIBRARY(name) name,
#include CORVEL_LATE_CALLS
#undef CORVEL_LATE_LIBRARY
#undef CORVEL_LATE_CALL
    nullptr,
};

constexpr Call kCalls[] = {
#define CORVEL_LATE_LIBRARY(name)
#define CORVEL_LATE_CALL(name, index, library) {#name, library},
#include CORVEL_LATE_CALLS
#undef CORVEL_LATE_CALL
#undef CORVEL_LATE_LIBRARY
#undef CORVEL_LATE_TYPE
    {nullptr, 0},
};

[[noreturn]] void fail(const Call& call) {
    logLine(std::string(kLibraries[call.library]) + " cannot be loaded: " + dlerror());
    std::abort();
}

// Called by the code above with the number of a function, for its first call: any thread may make
// it, and two may make it at once.
void* lateFunction(std::size_t index, void** slots) __asm__("corvel_late_function");
[[gnu::used]] void* lateFunction(std::size_t index, void** slots) {
    const Call& call = kCalls[index];
    void* library = dlopen(kLibraries[call.library], RTLD_LAZY | RTLD_GLOBAL);
    if (library == nullptr) fail(call);
    void* function = dlsym(library, call.name);
    if (function == nullptr) fail(call);
    __atomic_store_n(&slots[index], function, __ATOMIC_RELEASE);
    return function;
}

}  // namespace

}  // namespace corvel
