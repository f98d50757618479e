/*
 * Host-side extras of the object-list helper library, for tests and tools.
 */
#ifndef HELP_SIM_H
#define HELP_SIM_H

#ifdef __cplusplus
extern "C" {
#endif

/* Blocks obtained from help_calloc and not yet released with help_free,
 * counted over the whole process. */
__attribute__((visibility("default"))) long help_liveAllocations(void);

/* Allocations so far (help_calloc and the nodes of the help_add* functions),
 * over the whole process. */
__attribute__((visibility("default"))) long help_allocationCount(void);

/* The n-th help_calloc from now returns NULL (node allocations of the
 * help_add* functions included); 0 cancels. For fault injection. */
__attribute__((visibility("default"))) void help_failAllocationAt(long n);

#ifdef __cplusplus
}
#endif

#endif /* HELP_SIM_H */
