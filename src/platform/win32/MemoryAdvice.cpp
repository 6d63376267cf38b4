#include "platform/MemoryAdvice.h"

// Large pages are a privilege of few accounts here.
void PreferLargePages(void*, std::size_t) {}
