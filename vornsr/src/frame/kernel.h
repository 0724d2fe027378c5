// Kernels that stand in the symbol table under a name of their own, with C linkage.
#pragma once

#define VORN_KERNEL extern "C" __attribute__((visibility("default")))

// A second name for a kernel defined in the same file: one routine serves any alignment.
#define VORN_KERNEL_ALIAS(name, kernel) VORN_KERNEL __attribute__((alias(#kernel))) decltype(kernel) name
