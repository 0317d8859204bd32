// Stands for usr/include/assert.h of the SDK. May be included again with another NDEBUG.
#undef assert

#ifdef NDEBUG
#define assert(condition) ((void)0)
#else
extern "C" __attribute__((noreturn)) void __assert_rtn(const char* function, const char* file, int line,
                                                       const char* text);
#define assert(condition) ((condition) ? (void)0 : __assert_rtn(__func__, __FILE__, __LINE__, #condition))
#endif
